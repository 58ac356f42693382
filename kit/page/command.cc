// `cubekit page`: gathers what there is of a design and writes its page. A design that can't be read or
// breaks a rule gets a page too, which says what is wrong.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <sstream>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/draw/graph.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"
#include "kit/page/page.h"

namespace cubekit {

namespace {

std::string last_component(const std::string &path) { return path.substr(path.rfind('/') + 1); }

struct Sources {
  TruthTable table;
  Netlist netlist;
};

void gather_netlist(const DesignArguments &arguments, Sources &sources, PageContents &contents) {
  std::ostringstream faults;
  if (load_design(arguments.design, sources.netlist, faults)) contents.netlist = &sources.netlist;
  contents.netlist_faults = std::move(faults).str();
}

void gather_design(const DesignArguments &arguments, Sources &sources, PageContents &contents) {
  TruthTable &table = sources.table;
  const bool done =
      read_table(table_source(arguments, contents.netlist == nullptr ? "" : contents.netlist->part), table);
  contents.messages = table.messages;
  if (!done) return;
  contents.design = table.design.get();
  contents.cubes = &table.cubes;
  contents.pins = table.design->pin_names;
  contents.nodes = table.design->node_names;
  std::string fault; // also among the checker's messages
  const auto make = [&] { return make_meaning(*table.design, table.cubes, contents.meaning, fault); };
  if (!during("making the equations", make)) contents.meaning = {};
  const auto check = [&] { return check_design(*table.design, table.cubes, contents.messages); };
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
  declare_part(command, *arguments);
  declare_output(command, *arguments, "DESIGN.html; - is standard output");
  return [arguments] { return run_page(*arguments); };
}

} // namespace cubekit
