// The spelling of signals with dot extensions, in messages and in netlists.
#pragma once

#include <string>
#include <string_view>

namespace cubenet {

// Extension codes; 1 to 29 equal the bit numbers of the role flags.
enum ExtensionCode : int {
  EXT_NONE = 0,
  EXT_X1 = 1,
  EXT_X2,
  EXT_DX1,
  EXT_DX2,
  EXT_GX1,
  EXT_GX2,
  EXT_TX1,
  EXT_TX2,
  EXT_D,
  EXT_REG,
  EXT_T,
  EXT_J,
  EXT_K,
  EXT_R,
  EXT_S,
  EXT_C,
  EXT_LH,
  EXT_LE,
  EXT_CE,
  EXT_SP,
  EXT_SR,
  EXT_AR,
  EXT_RE,
  EXT_Q,
  EXT_FB,
  EXT_OE,
  EXT_PIN,
  EXT_AP,
  EXT_PR,
  EXT_UNSUPPORTED = 61, // FC, LD
  EXT_UNKNOWN = 62,
};

// Classifies an extension (exact, upper case; empty is none). Only this function treats CLK as C.
ExtensionCode extension_code(std::string_view extension);

// "base.ext", or the base alone; for messages.
std::string display_name(std::string_view base, std::string_view extension);

// "base_ext", compound extensions without their dot and REG as G ("D.X1" is DX1, "REG.X2" is GX2); the base
// alone without an extension. The mapping chooses the suffixes of plain names ("_PIN", "_D", "_Z").
std::string netlist_name(std::string_view base, std::string_view extension);

// Compares names by the case-sensitivity setting.
bool equal_names(std::string_view a, std::string_view b, bool case_sensitive);
bool equal_ignoring_case(std::string_view a, std::string_view b); // ASCII letters only, whatever the locale
std::string upper_case(std::string_view text);                    // ASCII letters only

} // namespace cubenet
