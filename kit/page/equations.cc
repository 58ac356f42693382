// The equations of a design as sums of products: a' is the complement of a, "a b" their AND, "+" the OR.
#include <algorithm>
#include <array>
#include <ostream>
#include <unordered_map>

#include "kit/draw/html.h"
#include "kit/page/page.h"

namespace cubekit {

using cubenet::display_name;
using cubenet::extension_code;
using enum cubenet::ExtensionCode;

namespace {

struct RoleRow {
  ExtensionCode code;
  std::string_view text; // what the equation is for
};
// clang-format off
constexpr auto kEquationRoles = std::to_array<RoleRow>({
    {EXT_X1,  "XOR, first input"},          {EXT_X2,  "XOR, second input"},
    {EXT_D,   "data"},                      {EXT_DX1, "data, first XOR input"},   {EXT_DX2, "data, second XOR input"},
    {EXT_REG, "data, as the pin shows it"}, {EXT_GX1, "data, first XOR input"},   {EXT_GX2, "data, second XOR input"},
    {EXT_T,   "toggle"},                    {EXT_TX1, "toggle, first XOR input"}, {EXT_TX2, "toggle, second XOR input"},
    {EXT_J,   "set at the clock"},          {EXT_K,   "reset at the clock"},
    {EXT_S,   "set at the clock"},          {EXT_R,   "reset at the clock"},
    {EXT_C,   "clock"},                     {EXT_CE,  "clock enable"},
    {EXT_LH,  "latch open at 1"},           {EXT_LE,  "latch open at 0"},
    {EXT_SP,  "synchronous preset"},        {EXT_SR,  "synchronous reset"},
    {EXT_AP,  "asynchronous preset"},       {EXT_AR,  "asynchronous reset"},
    {EXT_PR,  "asynchronous preset"},       {EXT_RE,  "asynchronous reset"},
    {EXT_OE,  "output enable"},
});
// clang-format on

std::string_view role_text(const std::string &extension) {
  const ExtensionCode code = extension_code(extension);
  const auto row = std::ranges::find(kEquationRoles, code, &RoleRow::code);
  return row == kEquationRoles.end() ? std::string_view() : row->text;
}

struct Sum {
  std::size_t count = 0;            // terms
  bool constant = false;            // some term has no literal
  std::vector<std::uint32_t> terms; // the first ones
};

std::vector<Sum> collect_sums(const PageContents &contents, const PageLimits &limits) {
  const CubeTable &cubes = *contents.cubes;
  std::vector<Sum> sums(contents.design->OLB.size());
  for (std::size_t c = 0; c < cubes.NUM_CUBES; c++) {
    const bool constant = count_literals(cubes, cube(cubes, c)) == 0;
    for_each_output(cubes, cube(cubes, c), [&](std::size_t output) {
      Sum &sum = sums[output];
      if (sum.count++ < limits.terms) sum.terms.push_back(static_cast<std::uint32_t>(c));
      sum.constant = sum.constant || constant;
    });
  }
  return sums;
}

// The outputs to print, those of a signal together, in the order of the signals.
std::vector<std::size_t> order_outputs(const Design &design, const PageLimits &limits) {
  std::vector<std::size_t> order(std::min(design.OLB.size(), limits.equations));
  std::unordered_map<std::string_view, std::size_t> first;
  for (std::size_t o = 0; o < order.size(); o++) {
    order[o] = o;
    first.emplace(design.OLB[o], o);
  }
  std::ranges::stable_sort(order, {}, [&](std::size_t o) { return first.at(design.OLB[o]); });
  return order;
}

struct Printer {
  std::ostream &stream;
  const PageContents &contents;
  const PageLimits &limits;
  std::vector<std::string> columns; // the input list, escaped
  std::size_t literals = 0;         // that may still be printed
};

std::string term_text(Printer &printer, std::uint32_t term) {
  std::string text;
  for_each_literal(*printer.contents.cubes, cube(*printer.contents.cubes, term), [&](std::size_t input, bool is_true) {
    if (!text.empty()) text += ' ';
    text.append(printer.columns[input]).append(is_true ? "" : "&#39;");
  });
  return text;
}

// Prints terms up to the limits of the sum and of the page. Returns how many.
std::size_t write_terms(Printer &printer, const Sum &sum) {
  std::size_t printed = 0;
  for (const std::uint32_t term : sum.terms) {
    const std::size_t size = count_literals(*printer.contents.cubes, cube(*printer.contents.cubes, term));
    if (size > printer.literals) break;
    printer.literals -= size;
    printer.stream << "<span>" << (printed == 0 ? "" : "+ ") << term_text(printer, term) << "</span>\n";
    printed++;
  }
  return printed;
}

void write_sum(Printer &printer, const Sum &sum) {
  const bool folded = sum.count > printer.limits.open_terms;
  if (folded) printer.stream << "<details><summary>" << count_text(sum.count, "term") << "</summary>\n";
  const std::size_t printed = write_terms(printer, sum);
  if (printed < sum.count)
    printer.stream << "<span class=\"note\">" << (printed == 0 ? "" : "+ ")
                   << count_text(sum.count - printed, printed == 0 ? "term" : "more term")
                   << (sum.count - printed == 1 ? " is" : " are") << " not printed here</span>\n";
  if (folded) printer.stream << "</details>";
}

void write_equation(Printer &printer, std::size_t output, const Sum &sum, bool first_of_signal) {
  const Design &design = *printer.contents.design;
  const bool inverted = test_bit(design.output_inversion, output);
  const bool constant = sum.constant || sum.count == 0;
  const std::string_view role = role_text(design.OB_EXT[output]);
  printer.stream << "<div" << (first_of_signal ? " class=\"first\"" : "") << "><dt id=\"e" << output
                 << "\"><span class=\"name\" data-signal>"
                 << escape_html(display_name(design.OLB[output], design.OB_EXT[output])) << "</span>"
                 << (inverted && !constant ? "<span class=\"name\">&#39;</span>" : "");
  if (!role.empty()) printer.stream << " <span class=\"role\">" << role << "</span>";
  printer.stream << "</dt><dd>";
  if (constant)
    printer.stream << "<span>" << (sum.constant != inverted ? '1' : '0') << "</span>";
  else
    write_sum(printer, sum);
  printer.stream << "</dd></div>\n";
}

} // namespace

void write_equations(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  stream << "<section id=\"equations\" aria-labelledby=\"equations-title\">\n"
            "<h2 id=\"equations-title\">Equations</h2>\n";
  if (contents.design == nullptr) {
    stream << "<p>There is no truth table to print.</p>\n</section>\n";
    return;
  }
  const Design &design = *contents.design;
  stream << "<p class=\"legend\"><code>a b</code> is AND, <code>+</code> is OR, <code>a&#39;</code> is the complement "
            "of <code>a</code>. An equation of <code>y&#39;</code> says when <code>y</code> is 0.</p>\n";
  if (design.OLB.empty()) stream << "<p>There are none.</p>\n";
  Printer printer{stream, contents, limits, {}, limits.literals};
  for (std::size_t i = 0; i < design.ILB.size(); i++)
    printer.columns.push_back(escape_html(display_name(design.ILB[i], design.IB_EXT[i])));
  const std::vector<Sum> sums = collect_sums(contents, limits);
  const std::string *signal = nullptr;
  const std::vector<std::size_t> order = order_outputs(design, limits);
  if (!order.empty()) stream << "<dl class=\"equations\">\n";
  for (const std::size_t output : order) {
    write_equation(printer, output, sums[output], signal == nullptr || *signal != design.OLB[output]);
    signal = &design.OLB[output];
  }
  if (!order.empty()) stream << "</dl>\n";
  if (order.size() < design.OLB.size())
    stream << "<p class=\"note\">" << order.size() << " of " << count_text(design.OLB.size(), "equation")
           << " are printed here.</p>\n";
  stream << "</section>\n";
}

} // namespace cubekit
