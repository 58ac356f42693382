// Prints truth table files.
#include "kit/random/design_text.h"

namespace cubekit {

namespace {

std::string entry_text(const TableEntry &entry) {
  std::string text = ' ' + entry.name;
  if (!entry.extension.empty()) text += '.' + entry.extension;
  return entry.inverted ? text + '-' : text;
}

std::string list_text(const std::string &head, const std::vector<TableEntry> &entries) {
  std::string text = head;
  for (const TableEntry &entry : entries) text += entry_text(entry);
  return text + '\n';
}

std::string declaration_text(const std::string &keyword, const std::vector<std::string> &names) {
  if (names.empty()) return {};
  std::string text = "#$ " + keyword + ' ' + std::to_string(names.size());
  for (const std::string &name : names) text += ' ' + name;
  return text + '\n';
}

std::string term_text(const DesignText &design, const TableTerm &term) {
  std::string inputs(design.columns.size(), '-'), outputs(design.outputs.size(), '0');
  for (const auto &[column, is_true] : term.literals) inputs[column] = is_true ? '1' : '0';
  for (const std::size_t output : term.outputs) outputs[output] = '1';
  return inputs + ' ' + outputs + '\n';
}

} // namespace

std::string format_design(const DesignText &design) {
  std::string text =
      "#$ MODULE random\n" + declaration_text("PINS", design.pins) + declaration_text("NODES", design.nodes);
  for (const std::string &statement : design.statements) text += "#$ " + statement + '\n';
  text += ".i " + std::to_string(design.columns.size()) + "\n.o " + std::to_string(design.outputs.size()) + '\n';
  text += list_text(".ilb", design.columns) + list_text(".ob", design.outputs);
  if (!design.phase.empty()) text += ".phase " + design.phase + '\n';
  for (const TableTerm &term : design.terms) text += term_text(design, term);
  return text + ".end\n";
}

void add_register_outputs(DesignText &design, const std::string &name, const SignalKind &kind,
                          const Controls &controls) {
  const auto add = [&](std::string_view extension, bool present = true) {
    if (present && !extension.empty()) design.outputs.push_back({name, std::string(extension)});
  };
  for (const std::string_view data : kind.data) add(data);
  add(controls.clock);
  add("CE", controls.CE);
  add("SP", controls.SP);
  add("SR", controls.SR);
  add(controls.reset);
  add(controls.preset);
}

} // namespace cubekit
