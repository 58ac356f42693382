// Writes a sketch as a truth table, reads it and checks it.
#include "drc/checking.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "drc/check_design.h"
#include "model/names.h"
#include "reader/reader.h"
#include "support/capture.h"

namespace cubenet {

namespace {

std::size_t count_words(const std::string &text) {
  std::istringstream words(text);
  std::string word;
  std::size_t count = 0;
  while (words >> word) count++;
  return count;
}

std::string truth_table(const Sketch &sketch) {
  const std::size_t inputs = count_words(sketch.ilb), outputs = count_words(sketch.ob);
  std::ostringstream text;
  text << "#$ PINS " << count_words(sketch.pins) << ' ' << sketch.pins << '\n';
  if (count_words(sketch.nodes) > 0) text << "#$ NODES " << count_words(sketch.nodes) << ' ' << sketch.nodes << '\n';
  std::istringstream statements(sketch.statements);
  for (std::string line; std::getline(statements, line);)
    text << (line[0] == '#' ? "" : "#$ PROPERTY corvane ") << line << '\n';
  text << ".i " << inputs << "\n.o " << outputs << "\n.ilb " << sketch.ilb << "\n.ob " << sketch.ob << '\n';
  const std::string term = std::string(inputs, '1') + " " + std::string(outputs, '1') + "\n";
  text << (sketch.terms.empty() ? term : sketch.terms) << ".e\n";
  return text.str();
}

std::string describe_marks(const SignalAttributes &marks) {
  std::string text;
  const std::pair<const char *, int> numbers[] = {
      {"LXOR2", marks.LXOR2}, {"PRESERVE", marks.PRESERVE}, {"PROTECT", marks.PROTECT}, {"ZDOT", marks.ZDOT},
      {"CLK0", marks.CLK0},   {"CLK1", marks.CLK1},         {"CLK2", marks.CLK2},       {"ICLK0", marks.ICLK0},
      {"ICLK1", marks.ICLK1}, {"FASTCLK", marks.FASTCLK},   {"SLOWCLK", marks.SLOWCLK}};
  for (const auto &[name, value] : numbers)
    if (value != 0) text += std::string(" ") + name;
  const std::pair<const char *, std::string_view> words[] = {
      {"SCP", marks.names->SCP}, {"SAP", marks.names->SAP}, {"SNP", marks.names->SNP}, {"SLP", marks.names->SLP},
      {"STP", marks.names->STP}, {"ECP", marks.names->ECP}, {"EAP", marks.names->EAP}, {"ENP", marks.names->ENP},
      {"ELP", marks.names->ELP}, {"ETP", marks.names->ETP}, {"GRP", marks.names->GRP}};
  for (const auto &[name, value] : words)
    if (!value.empty()) text.append(" ").append(name).append("=").append(value);
  return text;
}

std::string describe_pin(const Design &design, std::size_t pin) {
  const XPin &x = design.xpins[pin];
  std::string text = (x.xpin_num->empty() ? "" : " at=" + *x.xpin_num) + (x.grp->empty() ? "" : " grp=" + *x.grp);
  const std::pair<const char *, int> numbers[] = {{"crit", x.crit},         {"pullup", x.pullup},
                                                  {"outdelay", x.outdelay}, {"voltage", x.voltage},
                                                  {"slowslew", x.slowslew}, {"opendrain", x.opendrain}};
  for (const auto &[name, value] : numbers)
    if (value != 0) text += std::string(" ") + name + "=" + std::to_string(value);
  if (test_bit(design.pin_glb, pin)) text += " GLB";
  if (test_bit(design.pin_ioc, pin)) text += " IOC";
  return text;
}

} // namespace

Checking::Checking(const Sketch &sketch) {
  CapturedMessages captured;
  const std::string text = truth_table(sketch);
  std::FILE *file = std::tmpfile();
  EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file), text.size());
  std::rewind(file);
  design = read_tt2(file, "t", cubes);
  std::fclose(file);
  EXPECT_EQ(captured.take(), "") << text;
  if (design == nullptr)
    design = std::make_unique<Design>();
  else
    check();
}

void Checking::check() {
  CapturedMessages captured;
  failed = check_design(*design, cubes);
  const std::string opening = "Checking design rules...\n";
  messages = captured.take_unwrapped();
  EXPECT_EQ(messages.substr(0, opening.size()), opening);
  messages.erase(0, opening.size());
  EXPECT_EQ(failed, messages.find("ERROR: ") != std::string::npos ? 1 : 0) << messages;
}

std::string describe_stored(const Design &design) {
  std::string text;
  const auto add = [&](const std::string &where, const std::string &what) {
    if (!what.empty()) text.append(text.empty() ? "" : "; ").append(where).append(":").append(what);
  };
  for (std::size_t i = 0; i < design.pin_names.size(); i++) add(design.pin_names[i], describe_pin(design, i));
  for (std::size_t i = 0; i < design.node_names.size(); i++)
    add(design.node_names[i], (design.node_groups[i].empty() ? "" : " grp=" + design.node_groups[i]) +
                                  (test_bit(design.node_glb, i) ? " GLB" : "") +
                                  (test_bit(design.node_ioc, i) ? " IOC" : ""));
  for (std::size_t i = 0; i < design.ILB.size(); i++)
    add("in " + display_name(design.ILB[i], design.IB_EXT[i]), describe_marks(design.ilb_attributes[i]));
  for (std::size_t i = 0; i < design.OLB.size(); i++)
    add("out " + display_name(design.OLB[i], design.OB_EXT[i]), describe_marks(design.olb_attributes[i]));
  for (const std::string &option : design.header.option) add("option", option.empty() ? "" : " " + option);
  for (const Property &property : design.properties)
    if (property.attr_name != 0)
      add(std::to_string(property.attr_name),
          " " + display_name(property.pin_node_name, property.pi_node_ext) + "=" + property.attribute_value);
  for (const Path &path : design.paths)
    add("path " + path.name, " " + path.start.signal + "/" + std::to_string(path.start.kind) + " " + path.end.signal +
                                 "/" + std::to_string(path.end.kind));
  return text;
}

} // namespace cubenet
