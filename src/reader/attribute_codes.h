// The attribute codes that the reader treats by name; all others are told by the table of keywords alone.
#pragma once

namespace cubenet {

enum AttributeCode : int {
  CODE_NONE = 0,
  CODE_VOLTAGE = 20,
  CODE_VOLTAGE_VVCIO = 32,
  CODE_VOLTAGE_VCC = 33,
  CODE_REGTYPE = 38,
  CODE_GROUP = 50,
  CODE_LOCK = 51,
};

} // namespace cubenet
