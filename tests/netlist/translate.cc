#include "netlist/translate.h"

#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "drc/check_design.h"
#include "netlist/writers.h"
#include "reader/reader.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {

namespace {

// The nets of an NXF file: by the NET statements, and by the symbols' pins.
struct Wiring {
  std::multimap<std::string, std::string> sources, destinations; // net to "instance.pin"
};

void add_net(Wiring &nets, std::vector<std::string> words) {
  const std::string &net = words[1];
  bool is_source = false;
  for (std::size_t i = 2; i < words.size(); i++) {
    if (words[i] == "SRC" || words[i] == "DST")
      is_source = words[i] == "SRC";
    else if (words[i] == "EXT")
      continue;
    else
      (is_source ? nets.sources : nets.destinations).emplace(net, words[i]);
  }
  if (words[2] == "EXT" && words[3] == "DST") nets.sources.emplace(net, "outside");
}

std::vector<std::string> words_of(const std::string &line) {
  std::istringstream stream(line.substr(0, line.find(';')));
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

// Every symbol pin is on exactly the net that names it, every net has one source, and instances are unique.
void expect_sound(const std::string &nxf) {
  Wiring nets, pins;
  std::set<std::string> instances;
  std::string instance;
  std::istringstream lines(nxf);
  for (std::string line; std::getline(lines, line);) {
    const std::vector<std::string> words = words_of(line);
    if (line.starts_with("NET ")) add_net(nets, words);
    if (line.starts_with("SYM ")) {
      instance = words[2];
      EXPECT_TRUE(instances.insert(instance).second) << line;
    }
    if (!line.starts_with("\tPIN ")) continue;
    (words[2] == "OUT" ? pins.sources : pins.destinations).emplace(words[3], instance + "." + words[1]);
  }
  for (const auto &[net, source] : nets.sources) {
    EXPECT_EQ(nets.sources.count(net), 1U) << net;
    if (source == "outside") pins.sources.emplace(net, source);
  }
  for (const auto &[net, pin] : nets.destinations)
    EXPECT_TRUE(nets.sources.contains(net) || net == "GND" || net == "VCC") << net;
  const auto sorted = [](const std::multimap<std::string, std::string> &map) {
    return std::multiset<std::pair<std::string, std::string>>(map.begin(), map.end());
  };
  EXPECT_EQ(sorted(nets.sources), sorted(pins.sources)) << nxf;
  EXPECT_EQ(sorted(nets.destinations), sorted(pins.destinations)) << nxf;
}

std::string text_of(const std::string &path) { return std::filesystem::exists(path) ? read_file(path) : ""; }

// "\tPIN A0 IN net;" as " A0=net".
std::string pin_text(const std::string &line) {
  std::istringstream words(line);
  std::string keyword, pin, direction, net;
  words >> keyword >> pin >> direction >> net;
  if (!net.empty()) net.pop_back();
  return " " + pin + "=" + net;
}

} // namespace

Translation translate(const std::string &text, const RunSettings &settings) {
  run_settings = settings;
  if (run_settings.part_name) run_settings.part_flag = part_series(*run_settings.part_name);
  Translation result;
  TempDir dir;
  CapturedMessages messages;
  write_file(dir.file("in.tt2"), text);
  std::FILE *file = std::fopen(dir.file("in.tt2").c_str(), "r");
  CubeTable cubes;
  const auto design = read_tt2(file, "in.tt2", cubes);
  std::fclose(file);
  if (design != nullptr && check_design(*design, cubes) == 0) {
    result.ddf_status = write_ddf(cubes, dir.file("out.ddf"), design.get());
    result.nxf_status = write_nxf(cubes, dir.file("out.nxf"), dir.file("out.par"), "out.rsp", design.get());
  }
  result.messages = messages.take_unwrapped();
  result.nxf = text_of(dir.file("out.nxf"));
  result.ddf = text_of(dir.file("out.ddf"));
  result.par = text_of(dir.file("out.par"));
  reset_run_settings();
  expect_sound(result.nxf);
  return result;
}

std::vector<std::string> symbol_lines(const std::string &nxf) {
  std::vector<std::string> symbols;
  std::istringstream lines(nxf);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("SYM ")) {
      inside = true;
      symbols.push_back(line.substr(4, line.rfind(';') - 4));
    } else if (line == "END;") {
      inside = false;
    } else if (inside && line.starts_with("\tPIN ")) {
      symbols.back() += pin_text(line);
    } else if (inside && line.find("_PLA") == std::string::npos) {
      symbols.back() += " " + line.substr(1, line.find(' ') - 1);
    }
  }
  return symbols;
}

std::vector<std::string> symbol_lines_of(const std::string &nxf, const std::string &instance) {
  std::vector<std::string> found;
  for (const std::string &symbol : symbol_lines(nxf))
    if (symbol.find(" " + instance) == symbol.find(' ')) found.push_back(symbol);
  return found;
}

std::vector<std::string> net_lines(const std::string &nxf) {
  std::vector<std::string> nets;
  std::istringstream lines(nxf);
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("NET ") || line.starts_with("XPIN ")) nets.push_back(line);
  return nets;
}

} // namespace cubenet
