// `cubekit page`: gathers what there is of a design and writes its page. A design that can't be read or breaks a rule
// has a page too, which then tells what is wrong.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <sstream>

#include "kit/check/check.h"
#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/draw/graph.h"
#include "kit/netlist/flow.h"
#include "kit/page/page.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

std::string last_component(const std::string &path) { return path.substr(path.rfind('/') + 1); }

struct Sources {
  CubeTable cubes;
  std::unique_ptr<Design> design;
  Netlist netlist;
};

void read_for_part(const std::string &part, const std::string &path, const DesignArguments &arguments, Sources &sources,
                   PageContents &contents) {
  choose_part(part);
  cubenet::release_cubes(sources.cubes);
  const auto read = [&] { return read_design(path, arguments.case_sensitive, sources.cubes, contents.messages); };
  sources.design = during("reading the truth table", read);
}

void gather_netlist(const DesignArguments &arguments, Sources &sources, PageContents &contents) {
  std::ostringstream faults;
  if (load_design(arguments.design, sources.netlist, faults)) contents.netlist = &sources.netlist;
  contents.netlist_faults = std::move(faults).str();
}

void gather_design(const DesignArguments &arguments, Sources &sources, PageContents &contents) {
  const std::string path = table_path(arguments);
  read_for_part(arguments.part, path, arguments, sources, contents);
  // The part of the netlist is the one that the table was translated for.
  if (sources.design != nullptr && contents.netlist != nullptr && arguments.part.empty() &&
      sources.design->header.part != contents.netlist->part)
    read_for_part(std::string(contents.netlist->part), path, arguments, sources, contents);
  if (sources.design == nullptr) return;
  contents.design = sources.design.get();
  contents.cubes = &sources.cubes;
  contents.pins = sources.design->pin_names;
  contents.nodes = sources.design->node_names;
  std::string fault; // is among the messages of the checker
  const auto make = [&] { return make_meaning(*sources.design, sources.cubes, contents.meaning, fault); };
  if (!during("making the equations", make)) contents.meaning = {};
  const auto check = [&] { return check_design(*sources.design, sources.cubes, contents.messages); };
  contents.legal = during("checking the rules", check);
}

void draw(PageContents &contents, const PageLimits &limits) {
  if (contents.netlist == nullptr) return;
  if (!can_be_drawn(*contents.netlist, limits)) {
    contents.no_picture = "The netlist is too large for a picture.";
    return;
  }
  std::ostringstream dot;
  std::string svg;
  const auto drawn = [&] { return draw_svg(dot.view(), svg, contents.no_picture); };
  if (write_dot(dot, *contents.netlist, "") && during("drawing the netlist", drawn))
    contents.svg = inline_svg(svg, *contents.netlist);
  if (contents.svg.empty() && contents.no_picture.empty()) contents.no_picture = "Graphviz's drawing can't be used.";
}

int run_page(const DesignArguments &arguments) {
  Sources sources;
  PageContents contents;
  const PageLimits limits;
  contents.name = last_component(arguments.design);
  gather_netlist(arguments, sources, contents);
  gather_design(arguments, sources, contents);
  if (contents.design == nullptr && parse_messages(contents.messages).empty()) { // the file can't be opened
    std::cerr << contents.messages;
    return kMisuse;
  }
  draw(contents, limits);
  const std::string output = arguments.output.empty() ? arguments.design + ".html" : arguments.output;
  const int status = write_output(output == "-" ? "" : output, [&](std::ostream &stream) {
    const Stage stage("writing the page", 0, output == "-" ? Printing::YES : Printing::NO);
    write_page(stream, contents, limits);
  });
  return status != kYes ? status : contents.legal && contents.netlist != nullptr ? kYes : kNo;
}

} // namespace

std::function<int()> setup_page(CLI::App &command) {
  auto arguments = std::make_shared<DesignArguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  declare_output(command, *arguments, "DESIGN.html; - is standard output");
  return [arguments] { return run_page(*arguments); };
}

} // namespace cubekit
