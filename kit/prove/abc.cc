// Writes each side of the claims as one BLIF model with the variables as inputs, and reads abc's verdict from what it
// prints: its exit status tells nothing.
#include "kit/prove/abc.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "util/output_file.h"

extern char **environ;

namespace cubekit {

namespace {

using cubenet::Decimal;
using cubenet::OutputFile;
using cubenet::put_all;

struct Side {
  const Formulas &formulas;
  const std::vector<Claim> &claims;
  Literal Claim::*function;
};

void write_node(OutputFile &file, const Formulas &formulas, std::uint32_t index) {
  const Node &node = formulas.nodes[index];
  if (node.kind == NodeKind::VARIABLE) return;
  const std::span<const Literal> inputs = inputs_of(formulas, node);
  put_all(file, ".names");
  for (const Literal input : inputs) put_all(file, " n", Decimal{node_of(input)});
  put_all(file, " n", Decimal{index}, "\n");
  if (node.kind == NodeKind::CONSTANT) return; // no row: 0
  if (node.kind == NodeKind::XOR) {
    put_all(file, "01 1\n10 1\n"); // inputs of an XOR are never inverted
    return;
  }
  for (const Literal input : inputs) put_all(file, is_inverted(input) ? '0' : '1');
  put_all(file, " 1\n");
}

bool write_blif(const Side &side, const std::string &path) {
  OutputFile file;
  if (!open_output(file, path)) return false;
  std::vector<Literal> roots;
  for (const Claim &claim : side.claims) roots.push_back(claim.*side.function);
  Cone cone;
  find_cone(side.formulas, roots, cone);
  put_all(file, ".model claims\n.inputs");
  for (std::uint32_t n = 0; n < side.formulas.nodes.size(); n++)
    if (side.formulas.nodes[n].kind == NodeKind::VARIABLE) put_all(file, " n", Decimal{n});
  put_all(file, "\n.outputs");
  for (std::size_t c = 0; c < roots.size(); c++) put_all(file, " o", Decimal{c});
  put_all(file, "\n");
  for (const std::uint32_t node : cone.nodes) write_node(file, side.formulas, node);
  for (std::size_t c = 0; c < roots.size(); c++)
    put_all(file, ".names n", Decimal{node_of(roots[c])}, " o", Decimal{c},
            is_inverted(roots[c]) ? "\n0 1\n" : "\n1 1\n");
  put_all(file, ".end\n");
  return close_output(file);
}

// Runs abc and hands back all that it prints.
bool run_abc(const std::string &script, std::string &text) {
  int ends[2];
  if (::pipe(ends) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
  posix_spawn_file_actions_addclose(&actions, ends[0]);
  std::string words[] = {"berkeley-abc", "-q", script};
  char *arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t child = 0;
  const bool started = ::posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments, environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  char block[4096];
  for (ssize_t got = 0; started && (got = ::read(ends[0], block, sizeof block)) > 0;)
    text.append(block, static_cast<std::size_t>(got));
  ::close(ends[0]);
  if (started) ::waitpid(child, nullptr, 0);
  return started;
}

} // namespace

bool ask_abc(const Formulas &formulas, const std::vector<Claim> &claims, std::string &error) {
  if (claims.empty()) return true;
  std::string directory = (std::filesystem::temp_directory_path() / "cubekit-XXXXXX").string();
  if (::mkdtemp(directory.data()) == nullptr) return error = "no temporary directory could be made", false;
  const std::string actual = directory + "/actual.blif", wanted = directory + "/wanted.blif";
  std::string text;
  if (!write_blif({formulas, claims, &Claim::actual}, actual) ||
      !write_blif({formulas, claims, &Claim::wanted}, wanted))
    error = "its input could not be written";
  else if (!run_abc("cec " + actual + ' ' + wanted, text))
    error = "berkeley-abc could not be started";
  std::filesystem::remove_all(directory);
  if (!error.empty()) return false;
  if (text.find("Networks are equivalent") != std::string::npos) return true;
  error = text.empty() ? "no verdict" : text.substr(0, 2000);
  return false;
}

} // namespace cubekit
