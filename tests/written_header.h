// What every written file begins with.
#pragma once

#include <string_view>

namespace tabrin_test {

// In front of the node line.
inline constexpr std::string_view kWrittenHeader =
    "VERSION \"\"\r\n"
    "\r\n"
    "NS_ :\r\n"
    "    NS_DESC_\r\n"
    "    CM_\r\n"
    "    BA_DEF_\r\n"
    "    BA_\r\n"
    "    VAL_\r\n"
    "    CAT_DEF_\r\n"
    "    CAT_\r\n"
    "    FILTER\r\n"
    "    BA_DEF_DEF_\r\n"
    "    EV_DATA_\r\n"
    "    ENVVAR_DATA_\r\n"
    "    SGTYPE_\r\n"
    "    SGTYPE_VAL_\r\n"
    "    BA_DEF_SGTYPE_\r\n"
    "    BA_SGTYPE_\r\n"
    "    SIG_TYPE_REF_\r\n"
    "    VAL_TABLE_\r\n"
    "    SIG_GROUP_\r\n"
    "    SIG_VALTYPE_\r\n"
    "    SIGTYPE_VALTYPE_\r\n"
    "    BO_TX_BU_\r\n"
    "    BA_DEF_REL_\r\n"
    "    BA_REL_\r\n"
    "    BA_DEF_DEF_REL_\r\n"
    "    BU_SG_REL_\r\n"
    "    BU_EV_REL_\r\n"
    "    BU_BO_REL_\r\n"
    "    SG_MUL_VAL_\r\n"
    "\r\n"
    "BS_ :\r\n"
    "\r\n";

}  // namespace tabrin_test
