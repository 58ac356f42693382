// Random sources of each kind, the same for the same seed, and how many of them a test takes.
#pragma once

#include <cstdlib>

#include "kit/import/importing.h"

namespace cubekit {

// CUBEKIT_SOURCES asks for more.
inline std::uint64_t source_count(std::uint64_t usual) {
  const char *count = std::getenv("CUBEKIT_SOURCES");
  return count == nullptr ? usual : std::strtoull(count, nullptr, 10);
}

struct RandomCover {
  std::vector<std::string> inputs;
  std::vector<std::string> rows; // without the output
  bool tells_ones = true;
  bool value(const Levels &levels) const {
    bool is_met = false;
    for (const std::string &row : rows) {
      bool is_row = true;
      for (std::size_t i = 0; i < inputs.size(); i++)
        is_row &= row[i] == '-' || (row[i] == '1') == levels.at(inputs[i]);
      is_met |= is_row;
    }
    return rows.empty() ? false : is_met == tells_ones;
  }
};

struct RandomLatch {
  std::string name, data, type, control;
};

// A netlist, and independently what it computes.
struct RandomBlif {
  std::vector<std::string> inputs;
  std::vector<RandomLatch> latches;
  std::vector<std::pair<std::string, RandomCover>> logic; // in order
  std::string text;
};

inline RandomCover random_cover(Random &random, const std::vector<std::string> &known) {
  RandomCover cover;
  for (std::size_t n = random(5); n > 0; n--) cover.inputs.push_back(known[random(known.size())]);
  cover.tells_ones = random(3) != 0;
  for (std::size_t n = random(4); n > 0; n--) {
    cover.rows.emplace_back();
    for (std::size_t i = 0; i < cover.inputs.size(); i++) cover.rows.back() += "01-"[random(3)];
  }
  return cover;
}

inline std::string cover_text(const std::string &name, const RandomCover &cover) {
  std::string text = ".names";
  for (const std::string &input : cover.inputs) text += ' ' + input;
  text += " \\\n  " + name + "\n";
  for (const std::string &row : cover.rows) text += row + (row.empty() ? "" : " ") + (cover.tells_ones ? "1\n" : "0\n");
  return text;
}

inline RandomBlif random_blif(std::uint64_t seed) {
  Random random{seed};
  for (int i = 0; i < 8; i++) random(2);
  RandomBlif blif;
  std::vector<std::string> known;
  for (std::size_t n = 1 + random(5); n > 0; n--) blif.inputs.push_back("in" + std::to_string(n));
  known = blif.inputs;
  for (std::size_t n = random(4); n > 0; n--) {
    blif.latches.push_back({"r[" + std::to_string(n) + "]", "", std::vector{"re", "fe", "ah", "al"}[random(4)], ""});
    known.push_back(blif.latches.back().name);
  }
  std::string body;
  for (std::size_t n = 1 + random(12); n > 0; n--) {
    const std::string name = "g" + std::to_string(n);
    if (random(6) == 0) { // a placed model: AND and its complement
      const std::string a = known[random(known.size())], b = known[random(known.size())];
      body += ".subckt gate x=" + a + " y=" + b + " z=" + name + " n=" + name + "n\n";
      blif.logic.push_back({name, {{a, b}, {"11"}}});
      blif.logic.push_back({name + "n", {{a, b}, {"11"}, false}});
      known.push_back(name + "n");
    } else {
      blif.logic.emplace_back(name, random_cover(random, known));
      body = cover_text(name, blif.logic.back().second) + body; // readers may come first
    }
    known.push_back(name);
  }
  for (RandomLatch &latch : blif.latches) {
    latch.data = known[random(known.size())];
    latch.control = known[random(known.size())];
    body += ".latch " + latch.data + ' ' + latch.name + ' ' + latch.type + ' ' + latch.control + " 2\n";
  }
  blif.text = ".model top # a netlist\n.inputs";
  for (const std::string &input : blif.inputs) blif.text += ' ' + input;
  blif.text += "\n.outputs";
  std::size_t outputs = 0;
  for (std::size_t i = 0; i < known.size(); i++)
    if (random(4) == 0 || (outputs == 0 && i + 1 == known.size())) blif.text += ' ' + known[i], outputs++;
  blif.text +=
      "\n" + body + ".end\n.model gate\n.inputs x y\n.outputs z n\n.names z n\n0 1\n.names x y z\n11 1\n.end\n";
  return blif;
}

inline const std::vector<std::string> kTypes{"", "f", "r", "fd", "fr", "dr", "fdr"};

// A PLA whose every point is known.
struct RandomPla {
  std::size_t inputs, outputs;
  std::string type, text, phase;
  std::vector<std::string> terms; // inputs, then outputs
};

// Terms that intersect must not say on and off of the same output.
inline bool contradicts(const RandomPla &pla, const std::string &term) {
  const auto level = [](char c) { return c == '4' ? '1' : c == '2' ? '-' : c; };
  for (const std::string &other : pla.terms) {
    bool meets = true;
    for (std::size_t i = 0; i < pla.inputs; i++)
      meets &= level(term[i]) == '-' || level(other[i]) == '-' || term[i] == other[i];
    for (std::size_t o = pla.inputs; meets && o < term.size(); o++)
      if (level(term[o]) == '1' ? other[o] == '0' : term[o] == '0' && level(other[o]) == '1') return true;
  }
  return false;
}

inline RandomPla random_pla(std::uint64_t seed) {
  Random random{seed};
  for (int i = 0; i < 8; i++) random(2);
  RandomPla pla{1 + random(7), 1 + random(4), kTypes[random(kTypes.size())], "", "", {}};
  const auto one_of = [&](std::string_view characters) { return characters[random(characters.size())]; };
  for (std::size_t t = random(14); t > 0; t--) {
    std::string term;
    for (std::size_t i = 0; i < pla.inputs; i++) term += one_of("0101-2");
    for (std::size_t o = 0; o < pla.outputs; o++) term += one_of("001142-~3");
    const bool has_both = pla.type == "fr" || pla.type == "fdr";
    if (!has_both || !contradicts(pla, term)) pla.terms.push_back(term);
  }
  pla.text = "# .i 9\r\n.i " + std::to_string(pla.inputs) + "\n.o " + std::to_string(pla.outputs) + " # outputs\n";
  if (!pla.type.empty()) pla.text += ".type " + pla.type + "\n";
  if (random(4) == 0) {
    for (std::size_t o = 0; o < pla.outputs; o++) pla.phase += one_of("01");
    pla.text += ".phase " + pla.phase + '\n';
  }
  for (const std::string &term : pla.terms)
    for (const char c : term) {
      pla.text += c;
      if (random(12) == 0) pla.text += one_of("\n|  \t");
    }
  pla.text += random(2) == 0 ? "\n.e\n" : "\n";
  return pla;
}

// Expressions over the inputs and the registers.
inline std::string random_expression(Random &random, const std::vector<std::string> &names, int depth) {
  if (depth == 0 || random(4) == 0) return random(8) == 0 ? std::to_string(random(4)) : names[random(names.size())];
  const auto more = [&] { return random_expression(random, names, depth - 1); };
  const std::string operators[] = {" & ", " | ", " ^ ", " + ", " - ", " == ", " < ", " && "};
  switch (random(4)) {
  case 0: return "(~" + more() + ")";
  case 1: return "(" + more() + " ? " + more() + " : " + more() + ")";
  default: return "(" + more() + operators[random(8)] + more() + ")";
  }
}

struct RandomModule {
  std::string text;
  std::string start; // statements that set registers to 0
};

// Registers and latches of all kinds; each clock is an input that nothing else reads.
inline RandomModule random_module(std::uint64_t seed) {
  Random random{seed};
  for (int i = 0; i < 8; i++) random(2);
  std::string start, ports = "input clk, input gate, input rst, input en, input a, input [1:0] b, inout [1:0] bus",
                     body;
  std::vector<std::string> names{"en", "a", "b", "b[0]", "bus", "bus[1]"};
  const auto expression = [&] { return random_expression(random, names, 3); };
  for (std::size_t n = random(4); n > 0; n--) {
    const std::string name = "r" + std::to_string(n);
    ports += ", output reg [" + std::to_string(random(3)) + ":0] " + name;
    body += "  initial " + name + " = 0;\n";
    const std::string edge = random(2) == 0 ? "posedge" : "negedge", data = name + " <= " + expression() + ";";
    const std::string enabled = random(2) == 0 ? "if (en) " + data : data;
    const bool is_high = random(2) == 0;
    const std::string reset =
        std::string("if (") + (is_high ? "rst" : "!rst") + ") " + name + " <= " + std::to_string(random(2)) + "; else ";
    const std::size_t kind = random(4);
    if (kind != 0 && (kind != 3 || is_high)) start += "dut." + name + " = 0; ";
    switch (kind) {
    case 0:
      body += "  always @* if (" + std::string(is_high ? "gate" : "!gate") + ") " + name + " = " + expression() + ";\n";
      break;
    case 1: body += "  always @(" + edge + " clk) " + enabled + "\n"; break;
    case 2:
      body += "  always @(" + edge + " clk) " + (random(2) == 0 ? reset + enabled : "if (en) " + reset + data) + "\n";
      break;
    default:
      body += "  always @(" + edge + " clk or " + (is_high ? "posedge" : "negedge") + " rst) " + reset + enabled + "\n";
    }
    names.push_back(name);
  }
  ports += ", output [1:0] y, output z, output t";
  body += "  assign y = " + expression() + ";\n  assign z = " + expression() + ";\n";
  body += "  assign t = a ? " + expression() + " : 1'bz;\n";
  names = {"a", "b", "b[1]"}; // no loop through the pins
  body += "  assign bus = en ? " + expression() + " : 2'bzz;\n";
  return {"module dut(" + ports + ");\n" + body + "endmodule\n", start};
}

} // namespace cubekit
