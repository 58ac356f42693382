// Attribute codes (Property::attr_name) that code treats by name; the reader's table of keywords holds all of them.
#pragma once

namespace cubenet {

enum AttributeCode : int {
  CODE_NONE = 0, // rejected, ignored or consumed
  CODE_VOLTAGE = 20,
  CODE_OPENDRAIN_ON = 21,
  CODE_OPENDRAIN_OFF = 22,
  CODE_SLEW_SLOW = 23,
  CODE_SLEW_FAST = 24,
  CODE_PULL_UP = 27,
  CODE_PULL_OFF = 28,
  CODE_PULL_HOLD = 29,
  CODE_OUTDELAY_ON = 30,
  CODE_OUTDELAY_OFF = 31,
  CODE_VOLTAGE_VVCIO = 32,
  CODE_VOLTAGE_VCC = 33,
  CODE_REGTYPE = 38,
  CODE_FIRST_PATH = 40, // SCP; a path's ending kind is its starting kind plus 5
  CODE_FIRST_PATH_END = 45,
  CODE_LAST_PATH = 49,
  CODE_GROUP = 50,
  CODE_LOCK = 51,
  CODE_RESERVE_PIN = 53,
  CODE_PULL_DOWN = 54, // no statement sets it; only the older family's statements fill the DOWN list
};

} // namespace cubenet
