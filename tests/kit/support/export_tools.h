// Translations of the example designs, and the programs that check what the kit makes of them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"
#include "kit/sim/sim.h"
#include "support/temp_dir.h"

namespace cubekit {

using cubenet::read_file;
using cubenet::TempDir;
using cubenet::write_file;

struct Outcome {
  int status = -1;
  std::string text; // both streams
};

inline Outcome run(const std::string &command) {
  Outcome result;
  std::FILE *pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  std::array<char, 4096> block;
  for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), pipe)) > 0;)
    result.text.append(block.data(), got);
  result.status = WEXITSTATUS(pclose(pipe));
  return result;
}

inline Outcome run_kit(const std::string &arguments) { return run(CUBEKIT_PROGRAM " " + arguments); }

// Options of a translation: every form of the logic, and each kind of device.
inline const std::vector<std::string> kModes{"-pla", "-and 2 -or 2", "-and 3 -or 4 -p Tarvex5128K-100XQ64",
                                             "-pla -p Tarvex8128K"};

inline std::vector<std::string> example_names() {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(PROJECT_DIR "/examples"))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string example_path(const std::string &name) {
  return PROJECT_DIR "/examples/" + name + "/" + name + ".tt2";
}

// Leaves the files in the directory. False when the design can't be translated in this mode: the part that
// the mode asks for may have no tristate buffer for node_oe.
inline bool translate_example(const TempDir &dir, const std::string &name, const std::string &mode) {
  const Outcome translation =
      run("cd " + dir.path.string() + " && " CUBENET_PROGRAM " -i " + example_path(name) + " " + mode + " " + name);
  if (translation.status == 0) return true;
  EXPECT_TRUE(name == "node_oe" && mode.find("-p Tarvex5") != std::string::npos) << mode << "\n" << translation.text;
  return false;
}

// Calls test(name, dir, netlist) for every example in each of the modes.
template <typename Test> void for_each_translation(const std::vector<std::string> &modes, Test test) {
  for (const std::string &name : example_names()) {
    for (const std::string &mode : modes) {
      SCOPED_TRACE(name + " " + mode);
      TempDir dir;
      Netlist netlist;
      std::ostringstream errors;
      if (!translate_example(dir, name, mode)) continue;
      ASSERT_TRUE(load_design(dir.file(name), netlist, errors)) << errors.str();
      test(name, dir, netlist);
    }
  }
}

// A netlist around the given lines of its logical section.
inline std::string nxf_text(const std::string &logic) {
  return "NXF 11.0.5 L;\n\nSECTION HEADER;\n\tDESIGN small 1.0.0;\n\tDESCRIPTION  ;\nEND;\n\nSECTION DEVICE;\n"
         "\tTECHNOLOGY Tarvex;\n\tPART p5;\nEND;\n\nSECTION LOGICAL;\n" +
         logic + "END;\n\nEND;\n\n";
}

// Rows of device input values, from all 0: each row changes one of them, so that there are no races.
inline std::vector<std::vector<Value>> random_rows(const Netlist &netlist, std::size_t count) {
  std::uint64_t state = 12345;
  const auto random = [&](std::size_t bound) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state >> 33) % bound;
  };
  std::vector<std::size_t> inputs;
  for (std::size_t i = 0; i < netlist.external_pins.size(); i++)
    if (netlist.external_pins[i].direction != Direction::OUT) inputs.push_back(i);
  std::vector<std::vector<Value>> rows{std::vector<Value>(netlist.external_pins.size(), Value::LOW)};
  while (rows.size() < count) {
    std::vector<Value> row = rows.back();
    const std::size_t pin = inputs[random(inputs.size())];
    const bool may_float = netlist.external_pins[pin].direction == Direction::BIDI;
    const Value next = may_float && random(3) == 0 ? Value::OPEN : row[pin] == Value::HIGH ? Value::LOW : Value::HIGH;
    row[pin] = next;
    rows.push_back(row);
  }
  return rows;
}

} // namespace cubekit
