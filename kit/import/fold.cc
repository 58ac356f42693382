// Folds equations: signals that only rename another signal's value vanish, and small equations go into their
// readers.
#include <algorithm>

#include "kit/import/import.h"
#include "kit/util/finding.h"

namespace cubekit {

using enum cubenet::ExtensionCode;

namespace {

using Product = std::vector<TermLiteral>; // ascending
using Sum = std::vector<Product>;

// The largest sum in which products that others cover are looked for.
constexpr std::size_t kAbsorbed = 256;

template <typename Visit> void for_each_literal(const Draft &draft, const Equation &equation, Visit visit) {
  for (const auto *list : {&equation.terms, &equation.free})
    for (const std::uint32_t term : *list)
      for (const TermLiteral literal : literals_of(draft.terms, term)) visit(literal);
}

void mark_used(Draft &draft) {
  std::vector<std::uint32_t> open;
  const auto use = [&](std::uint32_t signal) {
    if (draft.signals[signal].is_used) return;
    draft.signals[signal].is_used = true;
    open.push_back(signal);
  };
  for (std::uint32_t s = 0; s < draft.signals.size(); s++)
    if (draft.signals[s].port != PortKind::NONE) use(s);
  while (!open.empty()) {
    const DraftSignal &signal = draft.signals[open.back()];
    open.pop_back();
    for (const std::uint32_t equation : signal.equations)
      for_each_literal(draft, draft.equations[equation], [&](TermLiteral literal) { use(signal_of(literal)); });
  }
}

// Orders signals with logic after those that they read.
class Sorter {
public:
  Sorter(const Draft &draft, Remark &fault) : draft_(draft), fault_(fault), states_(draft.signals.size()) {}

  [[nodiscard]] bool sort(std::vector<std::uint32_t> &order) {
    for (std::uint32_t s = 0; s < draft_.signals.size(); s++)
      if (draft_.signals[s].is_used && !visit(s, order)) return false;
    std::vector<std::uint32_t> seen(draft_.signals.size(), kNone);
    for (std::uint32_t s = 0; s < draft_.signals.size(); s++)
      if (draft_.signals[s].is_used && !check_pad(s, seen)) return false;
    return true;
  }

private:
  enum State : std::uint8_t { NEW, OPEN, DONE };
  struct Frame {
    std::uint32_t signal;
    std::vector<std::uint32_t> reads;
  };

  void open(std::uint32_t signal) {
    states_[signal] = OPEN;
    Frame frame{signal, {}};
    const Equation &equation = draft_.equations[find_equation(draft_, draft_.signals[signal], EXT_NONE)];
    for_each_literal(draft_, equation, [&](TermLiteral literal) { frame.reads.push_back(signal_of(literal)); });
    std::ranges::sort(frame.reads, std::greater<>());
    frame.reads.erase(std::unique(frame.reads.begin(), frame.reads.end()), frame.reads.end());
    frames_.push_back(std::move(frame));
  }

  bool visit(std::uint32_t start, std::vector<std::uint32_t> &order) {
    if (states_[start] != NEW || !is_logic(draft_, draft_.signals[start])) return true;
    open(start);
    while (!frames_.empty()) {
      Frame &frame = frames_.back();
      if (frame.reads.empty()) {
        states_[frame.signal] = DONE;
        order.push_back(frame.signal);
        frames_.pop_back();
        continue;
      }
      const std::uint32_t read = frame.reads.back();
      frame.reads.pop_back();
      if (states_[read] == OPEN) return tell_loop(read);
      if (states_[read] == NEW && is_logic(draft_, draft_.signals[read])) open(read);
    }
    return true;
  }

  // A pin with an enable must not depend on its own level. Loops through several pins are accepted: their
  // enables may exclude each other.
  bool check_pad(std::uint32_t pad, std::vector<std::uint32_t> &seen) {
    if (find_equation(draft_, draft_.signals[pad], EXT_OE) == kNone) return true;
    std::vector<std::uint32_t> open{pad};
    while (!open.empty()) {
      const DraftSignal &signal = draft_.signals[open.back()];
      open.pop_back();
      bool reads_pad = false;
      for (const std::uint32_t equation : signal.equations)
        for_each_literal(draft_, draft_.equations[equation], [&](TermLiteral literal) {
          const std::uint32_t read = signal_of(literal);
          reads_pad |= read == pad;
          if (seen[read] == pad || !is_logic(draft_, draft_.signals[read])) return;
          seen[read] = pad;
          open.push_back(read);
        });
      if (!reads_pad) continue;
      const DraftSignal &pin = draft_.signals[pad];
      fault_ = {draft_.equations[pin.equations[0]].place,
                "a loop of logic without a register, through the pin " + quoted(pin.source)};
      return false;
    }
    return true;
  }

  bool tell_loop(std::uint32_t signal) {
    constexpr std::size_t kShown = 8;
    std::string text = "a loop of logic without a register";
    fault_ = {};
    std::size_t shown = 0;
    const auto first = std::ranges::find(frames_, signal, &Frame::signal);
    for (auto frame = first; frame != frames_.end() && shown < kShown; ++frame)
      if (!draft_.signals[frame->signal].source.empty())
        text += (shown++ == 0 ? ": " : ", ") + quoted(draft_.signals[frame->signal].source);
    for (auto frame = first; frame != frames_.end() && fault_.place.line == 0; ++frame)
      fault_.place = draft_.signals[frame->signal].place;
    fault_.text = text;
    return false;
  }

  const Draft &draft_;
  Remark &fault_;
  std::vector<State> states_;
  std::vector<Frame> frames_{};
};

bool is_contained(const Product &larger, const Product &smaller) {
  return std::ranges::includes(smaller, larger); // fewer literals, more points
}

void tidy(Sum &sum) {
  std::ranges::sort(
      sum, [](const Product &a, const Product &b) { return a.size() != b.size() ? a.size() < b.size() : a < b; });
  sum.erase(std::unique(sum.begin(), sum.end()), sum.end());
  if (sum.size() > kAbsorbed) return;
  Sum kept;
  for (Product &product : sum)
    if (std::ranges::none_of(kept, [&](const Product &other) { return is_contained(other, product); }))
      kept.push_back(std::move(product));
  sum = std::move(kept);
}

// Adds a AND b to the sum, unless that is empty.
void add_joined(Sum &sum, const Product &a, std::span<const TermLiteral> b) {
  Product product;
  std::ranges::set_union(a, b, std::back_inserter(product));
  for (std::size_t i = 1; i < product.size(); i++)
    if (signal_of(product[i]) == signal_of(product[i - 1])) return;
  sum.push_back(std::move(product));
}

class Folder {
public:
  Folder(Draft &draft, std::size_t flatten)
      : draft_(draft), flatten_(flatten), readers_(draft.signals.size()), marks_(draft.signals.size(), kNone) {
    for (std::uint32_t e = 0; e < draft.equations.size(); e++)
      if (draft.signals[draft.equations[e].signal].is_used)
        for (const std::uint32_t signal : signals_of(e)) readers_[signal]++;
  }

  void fold(std::uint32_t index) {
    while (take_over(index)) {
    }
    std::vector<std::uint32_t> open = signals_of(index);
    std::ranges::reverse(open);
    while (!open.empty()) {
      const std::uint32_t signal = open.back();
      open.pop_back();
      if (!is_inner(signal)) continue;
      const Equation &inner = inner_equation(signal);
      // A constant, another signal or its complement: nothing grows.
      const bool is_trivial = inner.terms.empty() || literals_of(draft_.terms, inner.terms[0]).empty() ||
                              (inner.terms.size() == 1 && literals_of(draft_.terms, inner.terms[0]).size() == 1);
      const bool is_candidate = is_trivial || (flatten_ > 0 && readers_[signal] == 1);
      if (!is_candidate || !replace(index, signal, is_trivial ? ~std::size_t{0} : flatten_)) continue;
      const auto added = signals_of(find_equation(draft_, draft_.signals[signal], EXT_NONE));
      open.insert(open.end(), added.rbegin(), added.rend());
    }
  }

private:
  bool is_inner(std::uint32_t signal) const {
    return draft_.signals[signal].port == PortKind::NONE && draft_.signals[signal].is_used &&
           is_logic(draft_, draft_.signals[signal]);
  }
  Equation &inner_equation(std::uint32_t signal) {
    return draft_.equations[find_equation(draft_, draft_.signals[signal], EXT_NONE)];
  }

  // Each once, in the order in which they are first read.
  std::vector<std::uint32_t> signals_of(std::uint32_t equation) {
    std::vector<std::uint32_t> signals;
    for_each_literal(draft_, draft_.equations[equation], [&](TermLiteral literal) {
      if (marks_[signal_of(literal)] == equation) return;
      marks_[signal_of(literal)] = equation;
      signals.push_back(signal_of(literal));
    });
    for (const std::uint32_t signal : signals) marks_[signal] = kNone;
    return signals;
  }

  // Where the equation is just an inner signal that nothing else reads, it becomes that signal's equation.
  bool take_over(std::uint32_t index) {
    Equation &equation = draft_.equations[index];
    if (equation.terms.size() != 1 || !equation.free.empty()) return false;
    const auto literals = literals_of(draft_.terms, equation.terms[0]);
    if (literals.size() != 1) return false;
    const std::uint32_t signal = signal_of(literals[0]);
    if (!is_inner(signal) || readers_[signal] != 1) return false;
    Equation &inner = inner_equation(signal);
    equation.inverted ^= inner.inverted ^ !is_high(literals[0]);
    equation.terms = std::move(inner.terms);
    draft_.signals[signal].is_used = false;
    return true;
  }

  Sum sum_of(const Equation &equation) const {
    Sum sum;
    for (const std::uint32_t term : equation.terms) {
      const auto literals = literals_of(draft_.terms, term);
      sum.emplace_back(literals.begin(), literals.end());
    }
    return sum;
  }

  // False when the complement has too many products on the way.
  static bool complement(Sum &sum, std::size_t most) {
    Sum result{Product{}};
    for (const Product &product : sum) {
      Sum next;
      for (const Product &known : result)
        for (const TermLiteral literal : product) add_joined(next, known, {{literal ^ 1U}});
      if (next.size() > most) return false;
      tidy(next);
      result = std::move(next);
    }
    sum = std::move(result);
    return true;
  }

  // Substitutes the inner signal's equation. False when the sum gets more terms than allowed.
  bool replace(std::uint32_t index, std::uint32_t signal, std::size_t most) {
    const Equation &inner = inner_equation(signal);
    const std::size_t on_the_way = most > kAbsorbed ? most : 4 * most + 16;
    const Sum outer = sum_of(draft_.equations[index]);
    Sum high, low, result;
    for (const bool level : {true, false}) {
      const auto wants = [&](const Product &product) {
        return std::ranges::find(product, 2 * signal + (level ? 1 : 0)) != product.end();
      };
      Sum &sum = level ? high : low;
      if (std::ranges::none_of(outer, wants)) continue;
      sum = sum_of(inner);
      if (level == inner.inverted && !complement(sum, on_the_way)) return false;
    }
    for (const Product &product : outer) {
      const auto at = std::ranges::find(product, signal, signal_of);
      if (at == product.end()) {
        result.push_back(product);
        continue;
      }
      Product rest(product.begin(), at);
      rest.insert(rest.end(), at + 1, product.end());
      for (const Product &other : is_high(*at) ? high : low) add_joined(result, rest, other);
      if (result.size() > on_the_way) return false;
    }
    tidy(result);
    if (result.size() > most) return false;
    store(index, signal, result);
    return true;
  }

  void store(std::uint32_t index, std::uint32_t signal, const Sum &sum) {
    const std::uint32_t inner = find_equation(draft_, draft_.signals[signal], EXT_NONE);
    for (const std::uint32_t read : signals_of(index)) readers_[read]--;
    Equation &equation = draft_.equations[index];
    equation.terms.clear();
    for (const Product &product : sum) add_product(draft_, equation, product);
    for (const std::uint32_t read : signals_of(index)) readers_[read]++;
    if (readers_[signal] != 0) return;
    for (const std::uint32_t read : signals_of(inner)) readers_[read]--;
    draft_.signals[signal].is_used = false;
  }

  Draft &draft_;
  std::size_t flatten_;
  std::vector<std::uint32_t> readers_; // of a signal: equations that read it
  std::vector<std::uint32_t> marks_;
};

} // namespace

bool fold_equations(Draft &draft, std::size_t flatten, Remark &fault) {
  mark_used(draft);
  std::vector<std::uint32_t> order;
  if (!Sorter(draft, fault).sort(order)) return false;
  Folder folder(draft, flatten);
  for (const std::uint32_t signal : order)
    if (draft.signals[signal].is_used) folder.fold(find_equation(draft, draft.signals[signal], EXT_NONE));
  for (std::uint32_t e = 0; e < draft.equations.size(); e++) {
    const DraftSignal &signal = draft.signals[draft.equations[e].signal];
    if (signal.is_used && !is_logic(draft, signal)) folder.fold(e);
  }
  // Signals that only vanished ones had read are gone too.
  for (DraftSignal &signal : draft.signals) signal.is_used = false;
  mark_used(draft);
  return true;
}

} // namespace cubekit
