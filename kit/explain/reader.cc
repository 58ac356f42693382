// Messages about files, header lines, product terms and lists of names.
#include "kit/explain/explain.h"

#include <array>

namespace cubekit {

namespace {

// clang-format off
constexpr auto kRows = std::to_array<Explanation>({
    {31102, "A file could not be opened or read.", "The input is missing, is not a readable file, is the log, or changed while it was read.", "Check the name (without -i it is the design's name and .tt2), the directory and the permissions."},
    {31103, "An output file could not be written.", "The directory is missing or read-only, the disk is full, or the file is used as input, log or console.", "Make room or choose another place; an existing file was kept."},
    {31104, "Memory ran out.", "The design needs more memory than the system grants.", "Give the process more memory, or split the design."},
    {31204, "The truth table holds no product term.", "The file ends, or .e occurs, before any line of inputs and outputs.", "Add the product terms before .e."},
    {31209, "No pins are declared.", "The file has no '#$ PINS' statement that could be read.", "Add '#$ PINS <count> <name> ...' with all pins; for PLA, BLIF or Verilog use 'cubekit import'."},
    {31210, "No inputs are named.", "There is no .ilb line, or it was skipped because it comes before .i.", "Add an .ilb line after .i that names every input column."},
    {31211, "No outputs are named.", "There is no .ob line, or it was skipped because it comes before .o.", "Add an .ob line after .o that names every output column."},
    {31212, "The .ilb line and .i disagree.", "The number of names on the line differs from .i.", "Name each input column once, and set .i to their number."},
    {31213, "The .ob line and .o disagree.", "The number of names on the line differs from .o.", "Name each output column once, and set .o to their number."},
    {31214, "A pin name contains an illegal character.", "Letters, digits and a few marks are legal; the first illegal character is shown.", "Rename the pin."},
    {31215, "A pin name begins with an illegal character.", "Names must not begin with a digit, '+', '-' or ':'.", "Rename the pin."},
    {31216, "A pin is declared with a dot extension.", "Extensions belong to references on the .ilb and .ob lines, not to declarations.", "Declare the bare name."},
    {31218, "A pin name is too long.", "Names have at most 50 characters.", "Shorten the name."},
    {31219, "A node name is too long.", "Names have at most 50 characters.", "Shorten the name."},
    {31220, "A node is declared inverted.", "A '-' after a name inverts a registered pin; nodes have no pin to invert.", "Remove the '-', or invert the equation."},
    {31221, "A node is given a package pin that is not a number.", "Text follows the ':' after a node's name.", "Remove the ':' and the text: nodes are internal."},
    {31222, "A node name contains an illegal character.", "Letters, digits and a few marks are legal; the first illegal character is shown.", "Rename the node."},
    {31223, "A node declaration begins or ends with an illegal character.", "Names must not begin with a digit, '+', '-' or ':', and a ':' must be followed by something.", "Correct the declaration."},
    {31224, "A node is declared with a dot extension.", "Extensions belong to references on the .ilb and .ob lines, not to declarations.", "Declare the bare name."},
    {31225, "A name on the .ilb or .ob line contains an illegal character.", "Letters, digits and a few marks are legal; a ':' is legal only in the pin list.", "Correct the name."},
    {31226, "A name on the .ilb or .ob line begins with an illegal character.", "Names must not begin with a digit, '+', '-' or ':'.", "Correct the name."},
    {31227, "Text follows the sign of a name.", "Nothing may follow '+' or '-' but, in the pin list, ':' and a package pin.", "Put the sign at the very end of the name, after any dot extension."},
    {31228, "A name on the .ilb or .ob line is too long.", "Names have at most 50 characters, the dot extension included.", "Shorten the name."},
    {31229, "A name ends with a dot.", "A dot extension must follow the dot.", "Add the extension, or remove the dot."},
    {31238, "A pin's location is missing.", "The pin's name is followed by ':' but no package pin.", "Add the package pin, or remove the ':'."},
    {31401, "The .i line has no number.", ".i must be followed by the number of input columns.", "Write '.i <number>'."},
    {31402, "The number of inputs is invalid.", ".i must be followed by a whole number above 0.", "Correct the number."},
    {31403, "The .o line has no number.", ".o must be followed by the number of output columns.", "Write '.o <number>'."},
    {31404, "The number of outputs is invalid.", ".o must be followed by a whole number above 0.", "Correct the number."},
    {31405, ".o comes before .i.", "The table is laid out when .o is read, which needs .i.", "Put the .i line first."},
    {31406, ".phase comes before .i and .o.", "It has one digit per output, so the size of the table must be known.", "Put .phase after .i and .o."},
    {31407, "There are two .phase lines.", "The phase can be given only once.", "Remove one of them."},
    {31408, "The phase contains a character other than 0 and 1.", "Each output has one digit; if there are too few, the end of the line is reported.", "Write one 0 or 1 per output."},
    {31409, "The phase is too long.", "There are more digits than outputs, or something follows them.", "Write one digit per output and nothing else."},
    {31410, "A product term comes before .i and .o.", "Valid .i and .o lines must come first, in this order.", "Correct the header lines."},
    {31411, "A product term is too short.", "A term must have a character for each input and each output on one line.", "Complete the line; terms can't be continued on the next line."},
    {31412, "A product term contains an illegal character.", "Inputs are 0, 1, 2 or -; outputs are 0, 1, 2, 3, 4, - or ~.", "Correct the character that is shown."},
    {31413, "A product term is truncated.", "It contains a byte of value 255, as in a damaged file.", "Write the file again."},
    {31414, "A product term is too long.", "Something follows the last output.", "Remove it, or correct .i and .o."},
    {31501, "A second .i line was ignored.", "The number of inputs can be given only once.", "Remove one of the lines."},
    {31502, "A second .o line was ignored.", "The number of outputs can be given only once.", "Remove one of the lines."},
    {31503, "An empty pin list was ignored.", "'#$ PINS' has no names.", "Add the names, or remove the line."},
    {31504, "A second pin list was ignored.", "All pins must be declared by one statement.", "Join the lists."},
    {31505, "An empty node list was ignored.", "'#$ NODES' has no names.", "Add the names, or remove the line."},
    {31506, "A second node list was ignored.", "All nodes must be declared by one statement.", "Join the lists."},
    {31507, "A DEVICE statement without a name was ignored.", "Nothing follows the keyword.", "Add the device, or remove the line."},
    {31508, "A second DEVICE statement was ignored.", "The first one counts.", "Remove one of them."},
    {31509, "A MODULE statement without a name was ignored.", "Nothing follows the keyword.", "Add the design's name, or remove the line."},
    {31510, "A second MODULE statement was ignored.", "The first one counts.", "Remove one of them."},
    {31511, "The design's name is invalid and was ignored.", "It begins with a digit, or contains '.', ':' or another illegal character.", "Choose a plain name; without one the netlist gets a placeholder."},
    {31512, "The design's name was cut.", "It has more than 255 characters.", "Shorten it."},
    {31513, "The title was cut.", "All TITLE lines together have more than 255 characters.", "Shorten the title."},
    {31514, "A PROPERTY statement lacks its technology or its attribute.", "'#$ PROPERTY' must be followed by the technology and the attribute's keyword.", "Complete the statement."},
    {31515, "A PROPERTY statement of an unknown technology was ignored.", "Only 'corvane' and 'Mirn' are known.", "Correct the technology if the statement is meant for this program."},
    {31516, "A PART attribute without a part was ignored.", "Nothing follows the keyword.", "Add the part, or remove the line."},
    {31517, "An empty .ilb line was ignored.", "No names follow the keyword.", "Add the names of the inputs."},
    {31518, "A second .ilb line was ignored.", "All inputs must be named on one line.", "Remove one of the lines."},
    {31519, "An empty .ob line was ignored.", "No names follow the keyword.", "Add the names of the outputs."},
    {31520, "A second .ob line was ignored.", "All outputs must be named on one line.", "Remove one of the lines."},
    {31521, "The pin list does not begin with the number of pins.", "The first word was taken as a name.", "Put the number first."},
    {31522, "The node list does not begin with the number of nodes.", "The first word was taken as a name.", "Put the number first."},
    {31523, "The pin list's number and its items disagree.", "The items were counted, and their number is used.", "Correct the number, or look for a missing name."},
    {31524, "The node list's number and its items disagree.", "The items were counted, and their number is used.", "Correct the number, or look for a missing name."},
    {31525, "Further signs after a pin's name were ignored.", "One '+' or '-' is enough.", "Remove the others, and make sure the first is the one meant."},
    {31527, "A node's package pin was ignored.", "A ':' and a number follow a node's name, but nodes are internal.", "Remove it, or declare the name as a pin."},
    {31528, "A sign on the .ilb line was ignored.", "Inputs are inverted in the terms, not in the list.", "Remove the sign."},
    {31529, "Further signs on the .ob line were ignored.", "One '+' or '-' is enough.", "Remove the others, and make sure the first is the one meant."},
    {33130, "The log file could not be opened.", "cubenet.log can't be written in the working directory.", "Nothing is lost but the log: all messages go to the console as well."},
});
// clang-format on

} // namespace

std::span<const Explanation> reader_explanations() { return kRows; }

} // namespace cubekit
