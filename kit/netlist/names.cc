// Maps names to those that a format allows.
#include "kit/netlist/names.h"

#include <algorithm>
#include <array>

namespace cubekit {

namespace {

constexpr bool is_word(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

constexpr bool is_visible(char c) { return c > ' ' && c < 0x7F && c != '$' && c != '%' && c != '\\'; }

// clang-format off
constexpr auto kKeywords = std::to_array<std::string_view>({
    "accept_on", "alias", "always", "always_comb", "always_ff", "always_latch", "and", "assert", "assign", "assume",
    "automatic", "before", "begin", "bind", "bins", "binsof", "bit", "break", "buf", "bufif0", "bufif1", "byte", "case",
    "casex", "casez", "cell", "chandle", "checker", "class", "clocking", "cmos", "config", "const", "constraint",
    "context", "continue", "cover", "covergroup", "coverpoint", "cross", "deassign", "default", "defparam", "design",
    "disable", "dist", "do", "edge", "else", "end", "endcase", "endchecker", "endclass", "endclocking", "endconfig",
    "endfunction", "endgenerate", "endgroup", "endinterface", "endmodule", "endpackage", "endprimitive", "endprogram",
    "endproperty", "endsequence", "endspecify", "endtable", "endtask", "enum", "event", "eventually", "expect",
    "export", "extends", "extern", "final", "first_match", "for", "force", "foreach", "forever", "fork", "forkjoin",
    "function", "generate", "genvar", "global", "highz0", "highz1", "if", "iff", "ifnone", "ignore_bins",
    "illegal_bins", "implements", "implies", "import", "incdir", "include", "initial", "inout", "input", "inside",
    "instance", "int", "integer", "interconnect", "interface", "intersect", "join", "join_any", "join_none", "large",
    "let", "liblist", "library", "local", "localparam", "logic", "longint", "macromodule", "matches", "medium",
    "modport", "module", "nand", "negedge", "nettype", "new", "nexttime", "nmos", "nor", "noshowcancelled", "not",
    "notif0", "notif1", "null", "or", "output", "package", "packed", "parameter", "pmos", "posedge", "primitive",
    "priority", "program", "property", "protected", "pull0", "pull1", "pulldown", "pullup", "pulsestyle_ondetect",
    "pulsestyle_onevent", "pure", "rand", "randc", "randcase", "randsequence", "rcmos", "real", "realtime", "ref",
    "reg", "reject_on", "release", "repeat", "restrict", "return", "rnmos", "rpmos", "rtran", "rtranif0", "rtranif1",
    "s_always", "s_eventually", "s_nexttime", "s_until", "s_until_with", "scalared", "sequence", "shortint",
    "shortreal", "showcancelled", "signed", "small", "soft", "solve", "specify", "specparam", "static", "string",
    "strong", "strong0", "strong1", "struct", "super", "supply0", "supply1", "sync_accept_on", "sync_reject_on",
    "table", "tagged", "task", "this", "throughout", "time", "timeprecision", "timeunit", "tran", "tranif0", "tranif1",
    "tri", "tri0", "tri1", "triand", "trior", "trireg", "type", "typedef", "union", "unique", "unique0", "unsigned",
    "until", "until_with", "untyped", "use", "uwire", "var", "vectored", "virtual", "void", "wait", "wait_order",
    "wand", "weak", "weak0", "weak1", "while", "wildcard", "wire", "with", "within", "wone", "wor", "xnor", "xor",
});
// clang-format on
static_assert(std::is_sorted(kKeywords.begin(), kKeywords.end()));

bool is_simple_identifier(const std::string &text) {
  if (text.empty() || (text[0] >= '0' && text[0] <= '9') || text[0] == '$') return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return is_word(c) || c == '$'; }) &&
         !std::binary_search(kKeywords.begin(), kKeywords.end(), std::string_view(text));
}

} // namespace

std::string map_name(std::string_view name, NameSet set) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string mapped;
  for (const char c : name) {
    if (set == NameSet::WORD ? is_word(c) : is_visible(c)) {
      mapped += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    mapped += {'%', kDigits[byte >> 4], kDigits[byte & 0xFU]};
  }
  return mapped;
}

std::string verilog_identifier(const std::string &text) {
  return is_simple_identifier(text) ? text : "\\" + text + " ";
}

PortNames name_ports(const Netlist &netlist, NameSet set, bool outputs_apart) {
  PortNames names;
  names.nets.resize(netlist.nets.size());
  for (const ExternalPin &pin : netlist.external_pins) {
    names.pins.push_back(map_name(pin.pin, set));
    std::string &net = names.nets[pin.net];
    const bool shared = pin.direction != Direction::OUT || (pin.net_name == pin.pin && !outputs_apart);
    if (net.empty() && shared) net = names.pins.back();
  }
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    if (!names.nets[i].empty()) continue;
    const std::string_view name = netlist.nets[i].name;
    const bool taken = find_name(netlist.external_by_pin, name) != kNone;
    names.nets[i] = map_name(name, set) + (taken ? "$n" : "");
  }
  return names;
}

std::string module_name(const Netlist &netlist, NameSet set) {
  const std::string_view name = netlist.design;
  const bool taken = std::any_of(netlist.symbols.begin(), netlist.symbols.end(),
                                 [&](const Symbol &symbol) { return symbol.primitive_text == name; });
  return name.empty() ? "top$n" : map_name(name, set) + (taken ? "$n" : "");
}

} // namespace cubekit
