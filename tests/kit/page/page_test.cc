// Pages: nothing in a name escapes its place, the equations are those of the table, and omissions are stated.
#include "kit/check/check.h"
#include "kit/page/page.h"

#include <map>
#include <set>

#include "kit/draw/html.h"
#include "kit/support/export_tools.h"
#include "kit/support/translate.h"
#include "kit/table/read_design.h"
#include "report/messages.h"

namespace cubekit {
namespace {

// Walks through the elements of a page. A fault: an element not closed where it must be, a misplaced
// attribute, a duplicate id, a reference to a missing id.
struct Form {
  std::vector<std::string> open;
  std::set<std::string> ids, wanted;
  std::string fault;
};

// Reads the attributes of a tag, ` name` or ` name="value"` each.
void take_attributes(Form &form, std::string_view text) {
  while (!text.empty() && text != "/") {
    if (text.starts_with('\n')) text.remove_prefix(1);
    const std::size_t end = std::min(text.find_first_of("= ", 1), text.size());
    const std::string_view name = text.substr(0, end);
    if (name.size() < 2 || name[0] != ' ' || name.find_first_of("\"'<>&", 0) != std::string_view::npos)
      form.fault = "attribute: " + std::string(text);
    text.remove_prefix(end);
    if (!text.starts_with("=\"")) continue;
    const std::size_t quote = text.find('"', 2);
    if (quote == std::string_view::npos) return void(form.fault = "value: " + std::string(text));
    const std::string value(text.substr(2, quote - 2));
    text.remove_prefix(quote + 1);
    if (name == " id" && !form.ids.insert(value).second) form.fault = "twice: " + value;
    if (name == " href" || name == " for" || name.starts_with(" aria-labelled") || name.starts_with(" aria-described"))
      form.wanted.insert(value.substr(value.starts_with('#') ? 1 : 0));
  }
}

std::string form_fault(const std::string &html) {
  static const std::set<std::string_view> known{
      "html",  "head",  "meta",    "title",   "style",   "body",    "a",       "header", "h1",     "h2",
      "h3",    "p",     "div",     "dl",      "dt",      "dd",      "nav",     "ul",     "li",     "form",
      "label", "input", "main",    "kbd",     "footer",  "span",    "script",  "table",  "thead",  "tbody",
      "tr",    "th",    "td",      "section", "code",    "article", "button",  "svg",    "output", "g",
      "text",  "path",  "summary", "details", "polygon", "ellipse", "polyline"};
  static const std::set<std::string_view> empty{"meta", "input", "polygon", "polyline", "path", "ellipse"};
  Form form;
  for (std::size_t at = html.find("<html"); form.fault.empty() && (at = html.find('<', at)) != std::string::npos;) {
    const std::string_view tag = std::string_view(html).substr(at + 1, html.find('>', at) - at - 1);
    const bool closing = tag.starts_with('/');
    const std::string_view name = tag.substr(closing ? 1 : 0, tag.find(' ') - (closing ? 1 : 0)),
                           base = name.substr(0, name.find('/'));
    at += tag.size() + 2;
    if (tag.starts_with("!--") && tag.ends_with("--")) continue;
    if (!known.contains(base)) return "element: " + std::string(tag);
    if (closing && (form.open.empty() || form.open.back() != name)) return "closes " + std::string(name);
    if (closing) form.open.pop_back();
    if (closing) continue;
    take_attributes(form, tag.substr(name.size()));
    if (!empty.contains(base)) form.open.emplace_back(name);
    if (name == "style" || name == "script") at = html.find("</" + std::string(name), at);
  }
  for (const std::string &id : form.wanted)
    if (!form.ids.contains(id)) form.fault = "no such id: " + id;
  if (!form.open.empty()) form.fault += " open: " + form.open.back();
  return form.fault;
}

TEST(PageTest, NoByteGetsOutOfAText) {
  EXPECT_EQ(escape_html("a<b>&amp;\"'"), "a&lt;b&gt;&amp;amp;&quot;&#39;");
  EXPECT_EQ(escape_html(std::string_view("\0\t\n\x7F\\", 5)), "\\x00\\x09\\x0A\\x7F\\");
  EXPECT_EQ(escape_html("Z\u00e4hler \u03bb \u4e2d \U0001F600"), "Z\u00e4hler \u03bb \u4e2d \U0001F600");
  // Latin-1, a cut sequence, two overlong ones, a surrogate, beyond the last code point, right-to-left, no
  // width.
  for (const std::string bad : {"\xE4", "\xC3", "\xC0\xBC", "\xE0\x80\xBC", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                "\xE2\x80\xAE", "\xE2\x80\x8B", "\xC2\x85", "\xFF\xFE"}) {
    const std::string shown = escape_html("a" + bad + "<");
    EXPECT_EQ(shown.size(), 1 + 4 * bad.size() + 4) << shown;
    EXPECT_TRUE(std::ranges::all_of(shown, [](char c) { return c > ' ' && c < 0x7F; })) << shown;
  }
}

TEST(PageTest, JoinsTheLinesOfAMessage) {
  struct Console : cubenet::HostConsole {
    std::string text;
    void print(std::string_view more) override { text += more; }
  } console;
  cubenet::HostConsole *before = cubenet::set_host_console(&console);
  const std::string words = "Pin '<i>' of a rather long text 1 ERROR: that goes on and on until it is wrapped";
  const std::string word(200, 'w');
  cubenet::print_line("Checking design rules...");
  for (std::size_t length = 1; length <= 200; length++) {
    cubenet::report_warning(31544, "%s", words.substr(0, length).c_str());
    cubenet::report_error(31236, "x %s y", word.substr(0, length).c_str());
  }
  cubenet::set_host_console(before);
  const std::vector<Message> messages = parse_messages(console.text);
  ASSERT_EQ(messages.size(), 400U);
  for (std::size_t length = 1; length <= 200; length++) {
    std::string wanted = words.substr(0, length);
    wanted.erase(wanted.find_last_not_of(' ') + 1);
    EXPECT_EQ(messages[2 * length - 2].text, wanted);
    EXPECT_EQ(messages[2 * length - 1].text, "x " + word.substr(0, length) + " y");
    EXPECT_EQ(messages[2 * length - 1].severity, "ERROR");
    EXPECT_EQ(messages[2 * length - 1].number, 31236);
  }
}

// The page's equations section, without tags.
std::string equations(const std::string &table, const PageLimits &limits = {}) {
  const cubenet::WorkingDir dir;
  PageContents contents;
  CubeTable cubes;
  write_file("d.tt2", table);
  const auto design = read_design("d.tt2", false, cubes, contents.messages);
  if (design == nullptr) return contents.messages;
  contents.design = design.get();
  contents.cubes = &cubes;
  std::ostringstream html;
  write_equations(html, contents, limits);
  std::string text;
  const std::string all = html.str().substr(html.str().find("</p>") + 4);
  for (std::size_t at = 0; at < all.size(); at++) {
    if (all.substr(at).starts_with("</dt>")) text += " = ";
    if (all.substr(at).starts_with("</dd>")) text += ';';
    if (all[at] == '<')
      at = all.find('>', at);
    else if (all.substr(at).starts_with("&#39;"))
      text += '\'', at += 4;
    else if (all[at] != '\n')
      text += all[at];
    else if (!text.ends_with(' '))
      text += ' ';
  }
  return text;
}

TEST(PageTest, PrintsEquationsAsSumsOfProducts) {
  const std::string head =
      "#$ PINS 5 a b y z w\n#$ NODES 1 q\n.i 3\n.o 7\n.ilb a b q.Q\n.ob q.D y z- w q.C q.CE y.OE\n";
  EXPECT_EQ(equations(head + "110 1000000\n--1 1010000\n0-- 0110001\n1-- 0000100\n--- 0101000\n.end\n"),
            " q.D data = a b q.Q' + q.Q ; q.C clock = a ; q.CE clock enable = 0; y = 1; y.OE output enable = a' ;"
            " z' = q.Q + a' ; w = 1; ");
  EXPECT_EQ(equations(head + ".phase 0100001\n--- 0011000\n.end\n"), // inverted once and twice, constant
            " q.D data = 1; q.C clock = 1; q.CE clock enable = 1; y = 0; y.OE output enable = 0; z = 1; w = 0; ");
}

TEST(PageTest, TellsWhatItLeavesOut) {
  PageLimits limits;
  limits.open_terms = 1;
  limits.terms = 2;
  limits.literals = 7;
  limits.equations = 3;
  const std::string table =
      "#$ PINS 6 a b w x y z\n.i 2\n.o 4\n.ilb a b\n.ob w x y z\n11 1110\n10 1110\n01 1000\n.end\n";
  EXPECT_EQ(equations(table, limits),
            " w = 3 terms a b + a b' + 1 more term is not printed here ;"
            " x = 2 terms a b + 1 more term is not printed here ;"
            " y = 2 terms 2 terms are not printed here ; 3 of 4 equations are printed here. ");
}

TEST(PageTest, EveryPageIsWellFormedAndItsPinsAreThoseOfTheNetlist) {
  const std::map<Direction, std::string> directions{
      {Direction::IN, "in"}, {Direction::OUT, "out"}, {Direction::BIDI, "bidirectional"}};
  for_each_translation({"-and 2 -or 2", "-pla -p Tarvex8128K"}, [&](const std::string &name, const TempDir &dir,
                                                                    const Netlist &netlist) {
    const Outcome outcome = run_kit("page -i " + example_path(name) + " " + dir.file(name));
    EXPECT_EQ(outcome.status, 0) << outcome.text;
    const std::string page = read_file(dir.file(name + ".html"));
    EXPECT_EQ(form_fault(page), "");
    EXPECT_NE(page.find("<svg "), std::string::npos);
    for (const ExternalPin &pin : netlist.external_pins) {
      const std::size_t at = page.find(">" + escape_html(pin.pin) + "</", page.find("<tbody>"));
      const std::size_t cell = page.find("<td>", at) + 4;
      EXPECT_EQ(page.substr(cell, page.find('<', cell) - cell), directions.at(pin.direction)) << pin.pin;
    }
  });
}

TEST(PageTest, NamesAndMessagesStayTexts) {
  const cubenet::WorkingDir dir;
  const std::string wild = "\"><script>x=1</script><!--&lt\xE4'";
  const std::string table =
      "#$ MODULE <b>x&amp'\n#$ TITLE </p><script>alert(1)</script>\n"
      "#$ PINS 4 </title><script> <b>b</b> &lt' <i>unused\n#$ </li><img src=x onerror=alert(1)> 1\n"
      ".i 2\n.o 1\n.ilb </title><script> <b>b</b>\n.ob &lt'\n11 1\n.end\n";
  Translation translation;
  translate(table, "", translation);
  ASSERT_EQ(translation.status, 0) << translation.console;
  std::string netlist = read_file("d.nxf");
  const std::string name = "<b>b</b>";
  for (std::size_t at = 0; (at = netlist.find(name, at)) != std::string::npos; at += wild.size())
    netlist.replace(at, name.size(), wild);
  write_file("d.nxf", netlist);
  EXPECT_EQ(run_kit("page d").status, 0);
  const std::string page = read_file("d.html");
  EXPECT_EQ(form_fault(page), "");
  for (const std::string shown : {"<h1>&lt;b&gt;x&amp;amp&#39;</h1>", "&lt;i&gt;unused&#39; is declared but not used",
                                  "<g id=\"p1\" class=\"node pin\">", "<a xlink:title=\"&quot;&gt;&lt;script&gt;",
                                  "&lt;!&#45;&#45;&amp;lt\\xE4&#39;</text>"})
    EXPECT_NE(page.find(shown), std::string::npos) << shown;
  EXPECT_EQ(run_kit("page -o - d").text, page);
}

TEST(PageTest, GoesWithoutWhatThereIsNot) {
  const cubenet::WorkingDir dir;
  ASSERT_EQ(run(CUBENET_PROGRAM " -i " + example_path("counter") + " d").status, 0);
  write_file("d.tt2", read_file(example_path("counter")));
  EXPECT_EQ(run("PATH=/nowhere " CUBEKIT_PROGRAM " page d").status, 0);
  const std::string page = read_file("d.html");
  EXPECT_EQ(form_fault(page), "");
  EXPECT_NE(page.find("There is no picture of the netlist. &#39;dot&#39; of Graphviz can&#39;t be started"),
            std::string::npos);
  EXPECT_NE(page.find("<td>8</td>"), std::string::npos); // its symbols are counted
  write_file("dot", "#!/bin/sh\nprintf '<svg '\n");
  EXPECT_EQ(run("chmod +x dot; PATH=. " CUBEKIT_PROGRAM " page d").status, 0);
  EXPECT_NE(read_file("d.html").find("There is no picture of the netlist. Graphviz&#39;s drawing can&#39;t be used."),
            std::string::npos);
  write_file("d.tt2", "#$ PINS 2 a= y\n.i 1\n.o 1\n.ilb a\n.ob y\n1 1\n.end\n");
  std::remove("d.nxf");
  EXPECT_EQ(run_kit("page d").status, 1);
  const std::string broken = read_file("d.html");
  EXPECT_EQ(form_fault(broken), "");
  for (const std::string part : {"31214</h3>", "Pin name &#39;a=&#39;", "What to do: ", "d.nxf: No such file"})
    EXPECT_NE(broken.find(part), std::string::npos) << part;
  EXPECT_EQ(run_kit("page nothing").status, 2);
}

} // namespace
} // namespace cubekit
