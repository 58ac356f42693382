// The reader under test, and its invariants.
#include "reader/reading.h"

#include <cstdio>

#include <gtest/gtest.h>

#include "reader/reader.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {

namespace {

void check_invariants(const Design &design, const CubeTable &cubes) {
  const std::size_t pins = design.pin_names.size(), nodes = design.node_names.size();
  EXPECT_GT(pins, 0U);
  EXPECT_EQ(design.xpins.size(), pins);
  EXPECT_EQ(design.pin_locations, std::vector<int>(pins, -1));
  EXPECT_EQ(design.node_groups.size(), nodes);
  EXPECT_EQ(design.ILB.size(), cubes.inputs);
  EXPECT_EQ(design.OLB.size(), cubes.outputs);
  for (const std::size_t size : {design.IB_EXT.size(), design.ilb_attributes.size()})
    EXPECT_EQ(size, design.ILB.size());
  for (const std::size_t size : {design.OB_EXT.size(), design.olb_attributes.size()})
    EXPECT_EQ(size, design.OLB.size());
  for (const BitSet *set : {&design.pin_inversion, &design.pin_glb, &design.pin_ioc})
    EXPECT_EQ(set->words.size(), bit_set_words(pins));
  for (const BitSet *set : {&design.node_glb, &design.node_ioc}) EXPECT_EQ(set->words.size(), bit_set_words(nodes));
  EXPECT_EQ(design.output_inversion.words.size(), bit_set_words(design.OLB.size()));
  EXPECT_FALSE(design.header.family.empty());
  for (const Instance &instance : design.instances) {
    ASSERT_LT(instance.macro, design.macros.size());
    EXPECT_EQ(instance.inputs.size(), design.macros[instance.macro].inputs.size());
    EXPECT_EQ(instance.outputs.size(), design.macros[instance.macro].outputs.size());
  }
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++) {
    std::size_t driven = 0;
    for_each_output(cubes, cube(cubes, i), [&](std::size_t) { driven++; });
    EXPECT_GT(driven, 0U) << "cube " << i;
  }
}

} // namespace

Reading::Reading(std::string_view text) {
  CapturedMessages captured;
  std::FILE *file = std::tmpfile();
  EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file), text.size());
  std::rewind(file);
  design = read_tt2(file, "t", cubes);
  std::fclose(file);
  messages = captured.take_unwrapped();
  if (design != nullptr)
    check_invariants(*design, cubes);
  else
    EXPECT_EQ(cubes.rows, nullptr);
}

std::string design_with(std::string_view statements) {
  return "#$ PINS 3 a b y\n" + std::string(statements) + "\n.i 2\n.o 1\n.ilb a b\n.ob y\n11 1\n.e\n";
}

std::string describe_attributes(const Design &design) {
  std::string text;
  const auto add = [&](const std::string &item) { text += (text.empty() ? "" : "; ") + item; };
  for (const Property &property : design.properties) {
    std::string item = std::to_string(property.attr_name);
    if (!property.pin_node_name.empty()) item += " " + property.pin_node_name;
    if (!property.pi_node_ext.empty()) item += "." + property.pi_node_ext;
    if (!property.attribute_value.empty()) item += "=" + property.attribute_value;
    add(item);
  }
  for (std::size_t i = 0; i < design.header.option.size(); i++)
    if (!design.header.option[i].empty()) add("option " + std::to_string(i) + " " + design.header.option[i]);
  for (std::size_t i = 0; i < design.par.size(); i++)
    if (!design.par[i].empty()) add("par " + std::to_string(i) + " " + design.par[i]);
  for (const auto &[name, value] : design.name_values) add(name + ":" + value);
  return text;
}

void check_cases(std::string_view script, std::string (*wrap)(std::string_view input)) {
  std::string input, messages, stored;
  for (std::size_t at = 0, end = 0; at <= script.size(); at = end + 1) {
    end = std::min(script.find('\n', at), script.size());
    const std::string line(script.substr(at, end - at));
    if (line.starts_with("! ")) messages += line.substr(2) + "\n";
    if (line.starts_with("= ")) stored = line.substr(2);
    if (!line.empty() && line[0] != '!' && line[0] != '=') input += line + "\n";
    if (input.empty() || (!line.empty() && end != script.size())) continue;
    const Reading reading(wrap(input));
    EXPECT_EQ(reading.messages, messages) << input;
    EXPECT_EQ(reading.design != nullptr ? describe_attributes(*reading.design) : "failed", stored) << input;
    input = messages = stored = "";
  }
}

void check_case_file(const std::string &name, std::string (*wrap)(std::string_view input)) {
  SCOPED_TRACE(name);
  check_cases(read_file(std::string(PROJECT_DIR) + "/tests/reader/cases/" + name), wrap);
}

std::string join(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &word : words) text += word + " ";
  return text;
}

std::string message_numbers(std::string_view messages) {
  std::string numbers;
  for (std::size_t at = 0; at < messages.size(); at = messages.find('\n', at) + 1)
    if (messages.substr(at, 2) == "31") numbers.append(messages.substr(at, 5)).append(" ");
  return numbers;
}

} // namespace cubenet
