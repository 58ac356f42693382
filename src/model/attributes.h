// The attributes of signals: one table of their codes (Property::attr_name), used by the reader, the checker
// and messages.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace cubenet {

enum AttributeCode : int {
  CODE_NONE = 0, // rejected, ignored or consumed
  CODE_OPENDRAIN = 1,
  CODE_SLOWSLEW,
  CODE_PULLUP,
  CODE_PULL,
  CODE_OUTDELAY,
  CODE_VOLTAGE = 20,
  CODE_OPENDRAIN_ON,
  CODE_OPENDRAIN_OFF,
  CODE_SLEW_SLOW,
  CODE_SLEW_FAST,
  CODE_PULLUP_ON,
  CODE_PULLUP_OFF,
  CODE_PULL_UP,
  CODE_PULL_OFF,
  CODE_PULL_HOLD,
  CODE_OUTDELAY_ON,
  CODE_OUTDELAY_OFF,
  CODE_VOLTAGE_VVCIO,
  CODE_VOLTAGE_VCC,
  CODE_CRIT,
  CODE_LXOR2,
  CODE_PRESERVE,
  CODE_PROTECT,
  CODE_REGTYPE,
  CODE_CLK,
  CODE_SCP, // a path's ending kind is its starting kind plus 5
  CODE_SAP,
  CODE_SLP,
  CODE_STP,
  CODE_SNP,
  CODE_ECP,
  CODE_EAP,
  CODE_ELP,
  CODE_ETP,
  CODE_ENP,
  CODE_GROUP,
  CODE_LOCK,
  CODE_ZDOT,
  CODE_RESERVE_PIN,
  CODE_PULL_DOWN, // no statement sets it; only the older family's statements fill the DOWN list
};
static_assert(CODE_VOLTAGE_VCC == 33 && CODE_CLK == 39 && CODE_ENP == 49 && CODE_PULL_DOWN == 54);

// What an attribute applies to; the families of pins come first.
enum class AttributeFamily : std::uint8_t {
  OPENDRAIN,
  SLEW,
  PULL,
  OUTDELAY,
  VOLTAGE,
  CRIT,
  LOCK, // the last family of pins
  LXOR2,
  PRESERVE,
  PROTECT,
  REGTYPE,
  CLOCK,
  PATH_START,
  PATH_END,
  GROUP,
  ZDOT,
  RESERVATION,
};

struct Attribute {
  AttributeCode code;
  AttributeFamily family;
  std::string_view keyword;
  std::string_view setting{}; // after '='; empty: none
};

// clang-format off
inline constexpr auto kAttributes = std::to_array<Attribute>({
    // code              family                        keyword        setting
    {CODE_OPENDRAIN,     AttributeFamily::OPENDRAIN,   "OPENDRAIN"},
    {CODE_SLOWSLEW,      AttributeFamily::SLEW,        "SLOWSLEW"},
    {CODE_PULLUP,        AttributeFamily::PULL,        "PULLUP"},
    {CODE_PULL,          AttributeFamily::PULL,        "PULL"},
    {CODE_OUTDELAY,      AttributeFamily::OUTDELAY,    "OUTDELAY"},
    {CODE_VOLTAGE,       AttributeFamily::VOLTAGE,     "VOLTAGE"},
    {CODE_OPENDRAIN_ON,  AttributeFamily::OPENDRAIN,   "OPENDRAIN",   "ON"},
    {CODE_OPENDRAIN_OFF, AttributeFamily::OPENDRAIN,   "OPENDRAIN",   "OFF"},
    {CODE_SLEW_SLOW,     AttributeFamily::SLEW,        "SLOWSLEW",    "ON"},
    {CODE_SLEW_FAST,     AttributeFamily::SLEW,        "SLOWSLEW",    "OFF"},
    {CODE_PULLUP_ON,     AttributeFamily::PULL,        "PULLUP",      "ON"},
    {CODE_PULLUP_OFF,    AttributeFamily::PULL,        "PULLUP",      "OFF"},
    {CODE_PULL_UP,       AttributeFamily::PULL,        "PULL",        "UP"},
    {CODE_PULL_OFF,      AttributeFamily::PULL,        "PULL",        "OFF"},
    {CODE_PULL_HOLD,     AttributeFamily::PULL,        "PULL",        "HOLD"},
    {CODE_OUTDELAY_ON,   AttributeFamily::OUTDELAY,    "OUTDELAY",    "ON"},
    {CODE_OUTDELAY_OFF,  AttributeFamily::OUTDELAY,    "OUTDELAY",    "OFF"},
    {CODE_VOLTAGE_VVCIO, AttributeFamily::VOLTAGE,     "VOLTAGE",     "VVCIO"},
    {CODE_VOLTAGE_VCC,   AttributeFamily::VOLTAGE,     "VOLTAGE",     "VCC"},
    {CODE_CRIT,          AttributeFamily::CRIT,        "CRIT"},
    {CODE_LXOR2,         AttributeFamily::LXOR2,       "LXOR2"},
    {CODE_PRESERVE,      AttributeFamily::PRESERVE,    "PRESERVE"},
    {CODE_PROTECT,       AttributeFamily::PROTECT,     "PROTECT"},
    {CODE_REGTYPE,       AttributeFamily::REGTYPE,     "REGTYPE"},
    {CODE_CLK,           AttributeFamily::CLOCK,       "CLK"},
    {CODE_SCP,           AttributeFamily::PATH_START,  "SCP"},
    {CODE_SAP,           AttributeFamily::PATH_START,  "SAP"},
    {CODE_SLP,           AttributeFamily::PATH_START,  "SLP"},
    {CODE_STP,           AttributeFamily::PATH_START,  "STP"},
    {CODE_SNP,           AttributeFamily::PATH_START,  "SNP"},
    {CODE_ECP,           AttributeFamily::PATH_END,    "ECP"},
    {CODE_EAP,           AttributeFamily::PATH_END,    "EAP"},
    {CODE_ELP,           AttributeFamily::PATH_END,    "ELP"},
    {CODE_ETP,           AttributeFamily::PATH_END,    "ETP"},
    {CODE_ENP,           AttributeFamily::PATH_END,    "ENP"},
    {CODE_GROUP,         AttributeFamily::GROUP,       "GROUP"},
    {CODE_LOCK,          AttributeFamily::LOCK,        "LOCK"},
    {CODE_ZDOT,          AttributeFamily::ZDOT,        "ZDOT"},
    {CODE_RESERVE_PIN,   AttributeFamily::RESERVATION, "RESERVE_PIN"},
});
// clang-format on

// nullptr if no attribute has that code, or that upper-case keyword and setting.
const Attribute *find_attribute(int code);
const Attribute *find_attribute(std::string_view keyword, std::string_view setting);

// "KEYWORD", or "KEYWORD=SETTING".
std::string attribute_name(const Attribute &attribute);

constexpr bool is_of_pins(const Attribute &attribute) { return attribute.family <= AttributeFamily::LOCK; }
constexpr bool is_path_code(int code) { return code >= CODE_SCP && code <= CODE_ENP; }
constexpr bool is_path_start(int code) { return code >= CODE_SCP && code < CODE_ECP; }
// The ending kind that a path of that starting kind must have.
constexpr int end_of_path(int start_code) { return start_code + CODE_ECP - CODE_SCP; }

} // namespace cubenet
