// A translated design as one HTML page that needs nothing but itself.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/meaning.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit page`.
std::function<int()> setup_page(CLI::App &command);

// How much of a large design a page holds, so that a browser opens it quickly. Where something is left out,
// the page says how much.
struct PageLimits {
  std::size_t signals = 2000;             // rows of the table of pins, and of that of nodes
  std::size_t equations = 2000;           // output columns
  std::size_t open_terms = 8;             // an equation of more terms is folded
  std::size_t terms = 100;                // of one equation
  std::size_t literals = 100000;          // of all equations together
  std::size_t messages = 1000;            // texts
  std::size_t open_messages = 8;          // more texts of one number are folded
  std::size_t primitives = 500;           // rows of the table of symbols by primitive
  std::size_t picture_symbols = 400;      // symbols and pins of a netlist that is drawn
  std::size_t picture_connections = 1200; // and its driven symbol pins: more takes Graphviz long
};

// What the page shows. Only `name` is required.
struct PageContents {
  std::string name;               // the design as named on the command line, without directory
  const Design *design = nullptr; // after the check; nullptr: it can't be read
  const CubeTable *cubes = nullptr;
  std::vector<std::string> pins, nodes; // as declared; the design drops unused ones
  Meaning meaning;                      // without signals when it can't be derived
  bool legal = false;                   // the checker found no error
  std::string messages;                 // what the reader and the checker printed
  const Netlist *netlist = nullptr;     // nullptr: there is none that is in order
  std::string netlist_faults;           // why, a line each
  std::string svg;                      // the netlist as dot draws it; empty: it is not drawn
  std::string no_picture;               // why, as a sentence
};

void write_page(std::ostream &stream, const PageContents &contents, const PageLimits &limits = {});

// The sections of a page.
void write_signals(std::ostream &stream, const PageContents &contents, const PageLimits &limits);
void write_equations(std::ostream &stream, const PageContents &contents, const PageLimits &limits);
void write_picture(std::ostream &stream, const PageContents &contents);
void write_messages(std::ostream &stream, const PageContents &contents, const PageLimits &limits);
void write_statistics(std::ostream &stream, const PageContents &contents, const PageLimits &limits);

// Whether Graphviz draws the netlist in a short time.
bool can_be_drawn(const Netlist &netlist, const PageLimits &limits);

// A netlist's drawing, as dot made it for draw_svg, as an element of a page. Empty when the drawing is
// incomplete.
std::string inline_svg(std::string_view svg, const Netlist &netlist);

struct Message {
  long number = 0;
  std::string severity; // "ERROR"
  std::string text;     // on one line
};
// The numbered messages in a console text, with wrapped lines joined.
std::vector<Message> parse_messages(std::string_view console);

} // namespace cubekit
