// Messages of the design rules and of the mapping.
#include "kit/explain/explain.h"

#include <array>

namespace cubekit {

namespace {

constexpr const char *kOneDataInput =
    "A register has one data input, or one pair: .J with .K, .S with .R, .X1 with .X2.";
constexpr const char *kKeepOne = "Keep the equations of one kind of register and remove the others.";
constexpr const char *kLeftOnly = "It is on the .ilb line, but drives the register and can't be read.";
constexpr const char *kReadOther = "Read .Q, .FB, .PIN or the plain name, and use the extension only on the .ob line.";
constexpr const char *kNoRegister = "The signal has no register data input, so the extension has nothing to act on.";
constexpr const char *kMakeRegister = "Remove the extension, or give the signal a data input such as .D and a clock.";
constexpr const char *kReadsData =
    ".D can be read of any register, .T only of a T register, .REG only of a generic one.";
constexpr const char *kReadOwn = "Read .D instead.";

// clang-format off
constexpr auto kRows = std::to_array<Explanation>({
    {31231, "A pin is declared twice.", "Two items of the pin list have the same name (upper and lower case count as equal without -C).", "Remove or rename one."},
    {31232, "A node is declared twice.", "Two items of the node list have the same name (upper and lower case count as equal without -C).", "Remove or rename one."},
    {31233, "A name is both a pin and a node.", "It is in both lists.", "Remove it from one of them."},
    {31234, "Two pins are locked to the same package pin.", "Their locations are equal (upper and lower case count as equal).", "Move one of them."},
    {31235, "A pin is locked to two package pins.", "The pin list and a LOCK attribute, or two attributes, differ.", "Remove one of the locations."},
    {31236, "A signal is not declared.", "It is on the .ilb or .ob line, but in neither the pin list nor the node list; case matters.", "Declare it, or correct the name."},
    {31240, "A clock input is read.", kLeftOnly, kReadOther},
    {31241, "A register data input is read.", kLeftOnly, kReadOther},
    {31242, "An output enable is read.", kLeftOnly, kReadOther},
    {31243, "A clock enable is read.", kLeftOnly, kReadOther},
    {31244, "A synchronous preset is read.", kLeftOnly, kReadOther},
    {31245, "A synchronous reset is read.", kLeftOnly, kReadOther},
    {31246, "An asynchronous reset or preset is read.", kLeftOnly, kReadOther},
    {31247, "One half of an XOR pair is read.", kLeftOnly, kReadOther},
    {31248, "The extension is not supported.", ".FC and .LD are known, but have no meaning here.", "Remove the reference."},
    {31249, "The extension is not recognized.", "No dot extension has that name; the clock is .C on these lists, not .CLK.", "Correct the extension."},
    {31250, "A signal is listed twice on the .ilb line.", "Each reference may have one column.", "Merge the columns."},
    {31260, "A feedback is driven.", ".PIN, .Q and .FB read a signal and can't be on the .ob line.", "Drive the signal by .D, another data input, or its plain name."},
    {31280, ".D meets another data input.", kOneDataInput, kKeepOne},
    {31281, ".T meets another data input.", kOneDataInput, kKeepOne},
    {31282, ".REG meets another data input.", kOneDataInput, kKeepOne},
    {31283, ".J meets a data input other than .K.", kOneDataInput, kKeepOne},
    {31284, ".K meets a data input other than .J.", kOneDataInput, kKeepOne},
    {31285, ".D.X1 meets a data input other than .D.X2.", kOneDataInput, kKeepOne},
    {31286, ".D.X2 meets a data input other than .D.X1.", kOneDataInput, kKeepOne},
    {31287, ".T.X1 meets a data input other than .T.X2.", kOneDataInput, kKeepOne},
    {31288, ".T.X2 meets a data input other than .T.X1.", kOneDataInput, kKeepOne},
    {31289, ".REG.X1 meets a data input other than .REG.X2.", kOneDataInput, kKeepOne},
    {31290, ".REG.X2 meets .X2.", kOneDataInput, kKeepOne},
    {31291, "One half of a pair is missing.", ".J needs .K, .S needs .R, and each .X1 its .X2.", "Add the missing equation, if necessary a constant one."},
    {31292, ".R meets a data input other than .S.", kOneDataInput, kKeepOne},
    {31293, ".S meets a data input other than .R.", kOneDataInput, kKeepOne},
    {31300, "A register has two clocks.", ".C, .LE and .LH exclude each other: an edge, or a latch open at 0 or at 1.", "Keep one of them."},
    {31301, "A register has no clock.", "It has a data input and none of .C, .LE and .LH.", "Add .C for a flip-flop, or .LE or .LH for a latch."},
    {31302, "A latch enable on a register that can't be a latch.", "Only D and generic registers can be latches; T, J-K and S-R registers need .C.", "Use .C, or a .D equation."},
    {31305, "A clock without a register.", "The signal has .C, .LE or .LH and no register data input.", "Add the data input, or remove the clock."},
    {31310, "A clock enable on a latch.", ".CE works with .C alone.", "Remove .CE, or gate the latch enable itself."},
    {31311, "A register is driven by its plain name.", "Its data inputs need an extension.", "Write .D, .T or the intended data input."},
    {31321, "Two forms of a register's data input are read.", "Only one of .D, .REG and .T may be on the .ilb line.", "Read one of them."},
    {31322, "A D register's data input is read as another kind.", kReadsData, kReadOwn},
    {31324, "A generic register's data input is read as .T.", kReadsData, kReadOwn},
    {31325, "A J-K register's data input is read as another kind.", kReadsData, kReadOwn},
    {31326, "An S-R register's data input is read as another kind.", kReadsData, kReadOwn},
    {31327, "A T register's data input is read as .REG.", kReadsData, kReadOwn},
    {31329, ".PIN is read of a node.", "Nodes are internal and have no pin.", "Read the plain name, .Q or .FB, or declare the signal as a pin."},
    {31330, "A node has an output enable.", "Only devices of series 8 have internal tristate buffers.", "Declare the signal as a pin, or choose such a device."},
    {31331, "A pin is read both plainly and as .PIN.", "Both mean the same, and only one form may be used.", "Use one of them throughout."},
    {31332, "A register has two resets or two presets.", ".AR excludes .RE, .AP excludes .PR.", "Join the equations into one."},
    {31333, "A latch has a synchronous reset.", ".SR acts at a clock edge, which a latch doesn't have.", "Use .AR, or put the reset into the data equation."},
    {31334, "A latch has a synchronous preset.", ".SP acts at a clock edge, which a latch doesn't have.", "Use .AP, or put the preset into the data equation."},
    {31335, "A register has both a preset and a reset.", "The registers of this device series have one asynchronous input.", "Remove one, make it synchronous, or choose a device of series 5 or 8."},
    {31337, "A signal is driven plainly and by .X1.", "A combinational signal has one equation, or an XOR pair.", "Keep one form."},
    {31338, "A signal is driven plainly and by .X2.", "A combinational signal has one equation, or an XOR pair.", "Keep one form."},
    {31339, ".PIN is read of an input.", ".PIN reads back an output pin; this signal is driven by no equation.", "Read the plain name."},
    {31341, ".Q is read of a combinational signal.", kNoRegister, kMakeRegister},
    {31342, ".FB is read of a combinational signal.", kNoRegister, kMakeRegister},
    {31344, ".REG is read of a combinational signal.", kNoRegister, kMakeRegister},
    {31345, ".T is read of a combinational signal.", kNoRegister, kMakeRegister},
    {31346, ".SP on a combinational signal.", kNoRegister, kMakeRegister},
    {31347, ".SR on a combinational signal.", kNoRegister, kMakeRegister},
    {31348, ".AR or .RE on a combinational signal.", kNoRegister, kMakeRegister},
    {31349, ".AP or .PR on a combinational signal.", kNoRegister, kMakeRegister},
    {31350, ".CE on a combinational signal.", kNoRegister, kMakeRegister},
    {31351, "A signal has no equation.", "It is a node, or an output pin with only an output enable, and no macro drives it.", "Add its equation."},
    {31355, "A combinational pin is declared inverted.", "The '-' on the pin list belongs to registered pins.", "Put the '-' on the .ob line instead."},
    {31544, "An unused pin was removed.", "It is in neither list and in no macro's connections.", "Remove its declaration, or use it."},
    {31545, "An unused node was removed.", "It is in neither list and in no macro's connections.", "Remove its declaration, or use it."},
    {31550, "A signal is never read.", "No used product term depends on it.", "Nothing, unless it was meant to be used."},
    {31551, "A buried register is never read.", "It is a node, and neither .Q nor .FB nor its plain name is read.", "Remove it, or read it."},
    {31552, "An input pin that is never read was removed.", "No used product term depends on it.", "Remove its column, or use it; terms of constant outputs don't count."},
    {31554, "A register has a synchronous set and reset.", "Both are legal; when both are active, .SP wins.", "Nothing, if that is intended."},
    {31555, "A PULLUP switch could mean a pin.", "Its value is also the name of a pin; the switch was removed.", "Rename the pin, or write the attribute with a setting."},
    {31600, "An XOR attribute was ignored.", "It is not two terms of the same two inputs, each input once true and once complemented.", "Write it in that form, or remove the attribute."},
    {31620, "A pin was renamed in the netlist.", "Another signal, or a name in a macro statement, has the name of one of its nets or gates.", "Nothing; rename one of the two to keep the name."},
    {31621, "A node was renamed in the netlist.", "Another signal, or a name in a macro statement, has the name of one of its nets or gates.", "Nothing; rename one of the two to keep the name."},
    {312290, ".REG.X2 meets .X1.", kOneDataInput, kKeepOne},
});
// clang-format on

} // namespace

std::span<const Explanation> checker_explanations() { return kRows; }

} // namespace cubekit
