// The messages of a run, grouped by number: the explanation once, then each text.
#include <algorithm>
#include <ostream>
#include <unordered_map>

#include "kit/draw/html.h"
#include "kit/explain/explain.h"
#include "kit/page/page.h"

namespace cubekit {

namespace {

// "31236 ERROR: text": a line that begins a message. False for any other line, such as "Checking design
// rules...".
bool parse_first_line(std::string_view line, Message &message) {
  const std::size_t digits = line.find_first_not_of("0123456789");
  if (digits == 0 || digits > 9 || digits == std::string_view::npos || line[digits] != ' ') return false;
  const std::size_t colon = line.find(": ", digits);
  if (colon == std::string_view::npos) return false;
  message.number = std::stol(std::string(line.substr(0, digits)));
  message.severity = line.substr(digits + 1, colon - digits - 1);
  message.text = line.substr(colon + 2);
  return message.severity == "ERROR" || message.severity == "WARNING" || message.severity == "SYSTEM ERROR" ||
         message.severity == "INTERNAL ERROR";
}

// A continuation line begins with six spaces, or seven after a word that was broken with a '-'.
void join_line(std::string_view line, std::string &text) {
  constexpr std::string_view kBroken = "       ";
  if (line.starts_with(kBroken) && text.ends_with('-')) {
    text.pop_back();
    text += line.substr(kBroken.size());
  } else {
    if (!text.empty() && !text.ends_with(' ')) text += ' '; // the word before filled its line
    text += line.substr(std::min(line.find_first_not_of(' '), line.size()));
  }
}

std::string_view last_part(std::string_view severity) {
  return severity.substr(severity.rfind(' ') + 1); // SYSTEM ERROR is an ERROR
}

struct Group {
  const Message *first;
  std::vector<const Message *> messages;
};

std::vector<Group> group(const std::vector<Message> &messages) {
  std::vector<Group> groups;
  std::unordered_map<long, std::size_t> places;
  for (const Message &message : messages) {
    const auto [place, is_new] = places.try_emplace(message.number, groups.size());
    if (is_new) groups.push_back({&message, {}});
    groups[place->second].messages.push_back(&message);
  }
  std::ranges::stable_sort(groups, {}, [](const Group &one) { return last_part(one.first->severity) == "WARNING"; });
  return groups;
}

// The explanation after its number: the meaning, then a line each for the cause and the remedy.
void write_explanation(std::ostream &stream, long number) {
  const std::string text = explain(number);
  for (std::size_t at = text.find(": ") + 2, end = 0; !text.empty() && at < text.size(); at = end + 1) {
    end = text.find('\n', at);
    at = std::min(text.find_first_not_of(' ', at), end);
    stream << "<p class=\"explanation\">" << escape_html(std::string_view(text).substr(at, end - at)) << "</p>\n";
  }
}

void write_group(std::ostream &stream, const Group &group, std::size_t printed, const PageLimits &limits) {
  const std::size_t count = group.messages.size();
  const bool folded = printed > limits.open_messages;
  stream << "<article class=\"message " << (last_part(group.first->severity) == "WARNING" ? "warning" : "error")
         << "\">\n<h3><span class=\"severity\">" << escape_html(group.first->severity) << "</span> "
         << group.first->number << "</h3>\n";
  if (folded) stream << "<details><summary>" << count_text(count, "message") << "</summary>\n";
  if (printed > 0) stream << "<ul>\n";
  for (std::size_t i = 0; i < printed; i++)
    stream << "<li class=\"name\">" << escape_html(group.messages[i]->text) << "</li>\n";
  if (printed > 0) stream << "</ul>\n";
  if (printed < count)
    stream << "<p class=\"note\">" << count_text(count - printed, printed == 0 ? "message" : "more message")
           << (count - printed == 1 ? " is" : " are") << " not printed here.</p>\n";
  if (folded) stream << "</details>\n";
  write_explanation(stream, group.first->number);
  stream << "</article>\n";
}

} // namespace

std::vector<Message> parse_messages(std::string_view console) {
  std::vector<Message> messages;
  bool open = false; // the lines before belong to the last message
  while (!console.empty()) {
    const std::size_t end = std::min(console.find('\n'), console.size());
    const std::string_view line = console.substr(0, end);
    console.remove_prefix(std::min(end + 1, console.size()));
    Message message;
    if (open && line.starts_with("      ")) {
      join_line(line, messages.back().text);
      continue;
    }
    open = parse_first_line(line, message);
    if (open) messages.push_back(std::move(message));
  }
  for (Message &message : messages) message.text.erase(message.text.find_last_not_of(' ') + 1);
  return messages;
}

void write_messages(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  stream << "<section id=\"messages\" aria-labelledby=\"messages-title\">\n<h2 id=\"messages-title\">Messages</h2>\n";
  const std::vector<Message> messages = parse_messages(contents.messages);
  if (messages.empty()) stream << "<p>Reading and checking the design gave no message.</p>\n";
  std::size_t left = limits.messages;
  for (const Group &one : group(messages)) {
    const std::size_t printed = std::min(left, one.messages.size());
    write_group(stream, one, printed, limits);
    left -= printed;
  }
  stream << "</section>\n";
}

} // namespace cubekit
