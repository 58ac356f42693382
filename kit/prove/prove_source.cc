// Proves a netlist against the source of its truth table.
#include "kit/command/command.h"
#include "kit/prove/abc.h"
#include "kit/prove/settle.h"
#include "kit/prove/source.h"
#include "kit/util/finding.h"
#include "kit/util/progress.h"
#include "kit/util/run_program.h"

namespace cubekit {

namespace {

void tell_lacking(const std::vector<std::string> &lacking, ProofReport &report) {
  constexpr std::size_t kShown = 10;
  if (lacking.empty()) return;
  std::string text = "registers that the netlist doesn't have:";
  for (std::size_t i = 0; i < lacking.size() && i < kShown; i++)
    text += (i == 0 ? " " : ", ") + cubekit::quoted(lacking[i]);
  report.texts.push_back(text + (lacking.size() > kShown ? ", ...\n" : "\n"));
}

} // namespace

NewNames import_names(std::string_view text, const ImportOptions &options) {
  NewNames names;
  Draft draft;
  Remark ignored;
  if (!make_draft(text, options, draft, ignored)) return names;
  for (const DraftSignal &signal : draft.signals)
    if (signal.is_used) add_new_name(names, signal.source, signal.name);
  return names;
}

int prove_source(std::string_view text, const ImportOptions &options, NewNames names, const Netlist &netlist,
                 ProofOptions proof, ProofReport &report, std::string &fault) {
  proof.other = "the source";
  proof.conflicts = 10000; // berkeley-abc makes better use of similarities between circuits
  report = {};
  if (!run_program({"berkeley-abc", "-q", "quit"}).is_started) {
    fault = "this needs berkeley-abc, which can't be started; Debian has it in the package berkeley-abc\n";
    return kMisuse;
  }
  Formulas formulas;
  Source source;
  Draft draft;
  Remark remark;
  if (!read_source(text, options, formulas, source, draft, remark)) {
    fault = remark_text(draft, remark);
    return kMisuse;
  }
  if (names.empty() && has_unknown_name(source, netlist)) names = import_names(text, options);
  const Meaning meaning; // a table would only add the rows of ZDOT blocks
  Circuit circuit = make_circuit(netlist, meaning, formulas);
  Claims claims;
  std::vector<std::string> lacking;
  during("making the equations", [&] { collect_source_claims(source, names, circuit, claims, lacking); });
  std::string verdict;
  if (!settle_claims(claims, circuit, proof, report))
    tell_lacking(lacking, report);
  else if (during("asking berkeley-abc", [&] { return ask_abc(formulas, claims.list, verdict); }))
    return kYes;
  else
    report.texts.push_back("abc: " + verdict + '\n');
  return kNo;
}

} // namespace cubekit
