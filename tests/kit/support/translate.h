// Translates a design in this process, in the working directory, and reads it back.
#pragma once

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "frame/run.h"
#include "kit/check/check.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/prove/prove.h"
#include "kit/table/read_design.h"
#include "model/run_settings.h"
#include "report/console.h"
#include "support/arguments.h"
#include "support/temp_dir.h"

namespace cubekit {

struct Translation {
  int status = 2;
  std::string console;
  cubenet::CubeTable cubes;
  std::unique_ptr<cubenet::Design> design; // as read, before any check; nullptr: the reader refused it
  std::string messages;
};

// Runs the program on the text as design "d" with the options, then reads the table again for proofs.
inline void translate(const std::string &text, const std::string &options, Translation &result) {
  struct Console : cubenet::HostConsole {
    std::string text;
    void print(std::string_view more) override { text += more; }
  } console;
  cubenet::write_file("d.tt2", text);
  std::remove("d.par"); // of an earlier design
  cubenet::HostConsole *before = cubenet::set_host_console(&console);
  cubenet::Arguments arguments("cubenet -b" + (options.empty() ? "" : " " + options) + " d");
  cubenet::reset_run_settings();
  result.status = cubenet::run_program(arguments.count(), arguments.pointers.data());
  cubenet::set_host_console(before);
  std::remove("cubenet.log");
  result.console = console.text;
  cubenet::reset_run_settings();
  result.design = read_design("d.tt2", false, result.cubes, result.messages);
}

// The proof of the netlist in d.nxf; an empty text when it holds.
inline std::string prove_translation(const Translation &translation, const ProofOptions &options = {}) {
  Netlist netlist;
  std::ostringstream errors;
  if (translation.design == nullptr) return translation.messages;
  if (!load_nxf("d.nxf", netlist, errors)) return errors.str();
  ProofReport report;
  if (prove_netlist(*translation.design, translation.cubes, netlist, options, report)) return {};
  std::string text = std::to_string(report.differences) + " differences\n";
  for (const std::string &difference : report.texts) text += difference;
  return text;
}

// What the check finds in the files of the translation.
inline std::string check_translation() {
  std::ostringstream text;
  return check_files("d", "", text, text) == 0 ? "" : text.str();
}

} // namespace cubekit
