// Writes each side of the claims as one BLIF model with the variables as inputs, and reads abc's verdict from
// what it prints: its exit status says nothing.
#include "kit/prove/abc.h"

#include "kit/util/run_program.h"
#include "util/output_file.h"

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

} // namespace

bool ask_abc(const Formulas &formulas, const std::vector<Claim> &claims, std::string &error) {
  if (claims.empty()) return true;
  const TempDirectory directory;
  if (directory.path.empty()) return error = "no temporary directory could be made", false;
  const std::string actual = directory.path / "actual.blif", wanted = directory.path / "wanted.blif";
  ProgramRun cec;
  if (!write_blif({formulas, claims, &Claim::actual}, actual) ||
      !write_blif({formulas, claims, &Claim::wanted}, wanted))
    error = "its input could not be written";
  else if (cec = run_program({"berkeley-abc", "-q", "cec " + actual + ' ' + wanted}); cec.status < 0)
    error = "berkeley-abc " + cec.fault;
  if (!error.empty()) return false;
  const std::string text = cec.output + cec.errors;
  if (text.find("Networks are equivalent") != std::string::npos) return true;
  error = text.empty() ? "no verdict" : text.substr(0, 2000);
  return false;
}

} // namespace cubekit
