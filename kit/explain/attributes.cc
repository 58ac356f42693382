// Messages about attribute statements, as read and as checked against the signals, and about device
// selection.
#include "kit/explain/explain.h"

#include <array>

namespace cubekit {

namespace {

// clang-format off
constexpr auto kRows = std::to_array<Explanation>({
    {31361, "The part is not recognized.", "It has no family prefix and is not a device name, or it is too long.", "Name a part of a known family."},
    {31526, "An attribute's value is invalid.", "The keyword takes only certain words, or a number within a range.", "Correct the value; the statement was dropped."},
    {31530, "An attribute has too many operands.", "The extra ones were ignored.", "Remove them, and make sure that the right ones are kept."},
    {31531, "An attribute has no operand.", "The keyword is not followed by a signal or value.", "Complete the statement."},
    {31532, "An attribute's signal name is invalid.", "It contains an illegal character, such as ':'.", "Correct the name."},
    {31533, "An attribute's setting is not recognized.", "Settings are ON and OFF; PULL takes UP, OFF and HOLD.", "Correct the setting."},
    {31534, "An output form is invalid.", "OUTPUT_FORM takes SIM, LDF, ORCAD, VIEWLOGIC, VHDL, EDIF, VERILOG and PREROUTE_LDF.", "Correct the form; the others of the statement count."},
    {31535, "A switch has no value.", "The keyword must be followed by ON or OFF (PULL: also HOLD).", "Add the value."},
    {31536, "A name or value in an attribute is too long.", "It has more than 255 characters.", "Shorten it."},
    {31537, "A value in an attribute is invalid.", "It contains an illegal character, or begins with a digit where a name is expected.", "Correct the value."},
    {31538, "A path attribute names no path.", "A path name must follow the signal.", "Add the name of the path."},
    {31539, "The attribute is not recognized.", "The keyword is unknown, too long, or contains '.', '+', '-' or ':'.", "Correct the keyword."},
    {31540, "A sign after a signal in an attribute was ignored.", "Attributes apply to the signal whatever its polarity.", "Remove the sign."},
    {31541, "A node is locked to a package pin.", "Only pins can be locked.", "Remove the attribute, or declare the signal as a pin."},
    {31542, "A pin attribute names a node.", "Electrical attributes belong to pins.", "Remove the attribute, or declare the signal as a pin."},
    {31543, "An attribute names an unknown signal.", "No pin and no node has that name.", "Correct the name, or declare the signal."},
    {31546, "A GROUP attribute names no group.", "The group's name must follow the signal.", "Add it."},
    {31547, "A lock names no package pin.", "The package pin must follow the signal.", "Add it."},
    {31548, "A clock attribute names no known clock.", "CLK0, CLK1, CLK2, IOCLK0 or IOCLK1 must follow the signal.", "Add one of them."},
    {31549, "A register type is missing.", "GLB or IOC must follow the signal.", "Add one of them."},
    {31560, "The attribute needs an equation that doesn't exist.", "No equation of the kind that the attribute works on drives the signal.", "Name the signal as on the .ob line."},
    {31561, "A grouped signal is not used.", "Neither list has the signal as written here.", "Name the signal as on the .ilb or .ob line."},
    {31562, "The extension in an attribute is not supported.", ".FC and .LD are known, but have no meaning here.", "Remove the attribute."},
    {31563, "The extension in an attribute is not recognized.", "No dot extension has that name.", "Correct the extension."},
    {31564, "The attribute needs a reader that doesn't exist.", "No input column has the signal as written here.", "Name the signal as on the .ilb line."},
    {31565, "A pin attribute names a signal with an extension.", "Electrical attributes belong to the pin as a whole.", "Write the bare name."},
    {31566, "The extension belongs to registers, but the signal is combinational.", "A combinational signal has no register inputs or outputs.", "Write the signal as in the lists."},
    {31567, "A register type was given to a combinational signal.", "REGTYPE places registers.", "Remove the attribute."},
    {31568, "An XOR attribute names a register as a whole.", "It works on one equation.", "Name the equation with its extension, for example 'q.D'."},
    {31569, "The extension is invalid in an attribute.", "The halves of XOR pairs can't have attributes of their own.", "Name the signal itself."},
    {31571, "The register type is not recognized.", "Only GLB and IOC are known.", "Correct the value."},
    {31572, "An I/O cell register can't be set or reset asynchronously.", "REGTYPE IOC was given to a register with .RE, .AR, .AP or .PR.", "Use GLB, or make the control synchronous."},
    {31573, "A register type was applied to the whole register.", "It was written with an extension, which has no effect here.", "Write the bare name; the attribute counts either way."},
    {31574, "A register was given both types.", "The first of GLB and IOC counts.", "Remove one of the attributes."},
    {31581, "A path's name is too long.", "It has more than 255 characters.", "Shorten it; the path was ignored."},
    {31582, "A path has two starting points.", "The first one counts.", "Remove one, or name a second path."},
    {31584, "A path has two ending points.", "The first one counts.", "Remove one, or name a second path."},
    {31585, "A path has no ending point.", "Only a starting attribute names it.", "Add an ending attribute of the same kind."},
    {31587, "A path starts and ends as different kinds.", "Each starting kind has its own ending kind.", "Use the ending attribute that belongs to the starting one."},
    {31588, "A path's name is invalid.", "It begins with a digit, or contains '.' or another illegal character.", "Rename the path."},
    {31610, "An attribute names an input that nobody reads.", "No used product term depends on it.", "Remove the attribute, or use the signal."},
    {31631, "Part and device disagree.", "The DEVICE statement names another device than the part.", "Correct one of them; the part counts."},
    {31632, "The device is not recognized.", "It is neither a family nor a device name.", "Correct it; the part in the message is used."},
    {31633, "The device names only a family, the older one.", "A part of that family was chosen.", "Name the part if another is wanted."},
    {31634, "The device names only a family, the in-system programmable one.", "A part of that family was chosen.", "Name the part if another is wanted."},
    {31655, "An attribute was given twice.", "A switch or parameter can be set once; the first counts.", "Remove one of the statements."},
});
// clang-format on

} // namespace

std::span<const Explanation> attribute_explanations() { return kRows; }

} // namespace cubekit
