/* The numbers of the binary interface. They are written out by hand; none may be computed from another, and none may
 * ever change. A source includes this behind the header of the library and what it makes of PIN_SIZE, PIN_FIELD and
 * PIN_CODE. */
PIN_SIZE(CanErrorData, 264);
PIN_FIELD(CanErrorData, code, 0, 4);
PIN_FIELD(CanErrorData, line, 4, 4);
PIN_FIELD(CanErrorData, text, 8, 256);

PIN_SIZE(DatabaseInfo, 8);
PIN_FIELD(DatabaseInfo, protocolType, 0, 4);
PIN_FIELD(DatabaseInfo, canFd, 4, 4);

PIN_SIZE(CanMessageData, 640);
PIN_FIELD(CanMessageData, id, 0, 4);
PIN_FIELD(CanMessageData, identifierName, 4, 33);
PIN_FIELD(CanMessageData, reserved37, 37, 3);
PIN_FIELD(CanMessageData, dlc, 40, 4);
PIN_FIELD(CanMessageData, name, 44, 256);
PIN_FIELD(CanMessageData, transmitter, 300, 33);
PIN_FIELD(CanMessageData, reserved333, 333, 3);
PIN_FIELD(CanMessageData, numSignals, 336, 4);
PIN_FIELD(CanMessageData, reserved340, 340, 4);
PIN_FIELD(CanMessageData, comment, 344, 256);
PIN_FIELD(CanMessageData, sendType, 600, 33);
PIN_FIELD(CanMessageData, reserved633, 633, 3);
PIN_FIELD(CanMessageData, cycleTime, 636, 4);

PIN_SIZE(CanSignalData, 944);
PIN_FIELD(CanSignalData, identifierName, 0, 33);
PIN_FIELD(CanSignalData, name, 33, 256);
PIN_FIELD(CanSignalData, unit, 289, 33);
PIN_FIELD(CanSignalData, receivers, 322, 256);
PIN_FIELD(CanSignalData, comment, 578, 256);
PIN_FIELD(CanSignalData, reserved834, 834, 2);
PIN_FIELD(CanSignalData, multiplexKind, 836, 4);
PIN_FIELD(CanSignalData, multiplexValue, 840, 4);
PIN_FIELD(CanSignalData, startBit, 844, 4);
PIN_FIELD(CanSignalData, length, 848, 4);
PIN_FIELD(CanSignalData, byteOrder, 852, 4);
PIN_FIELD(CanSignalData, valueType, 856, 4);
PIN_FIELD(CanSignalData, reserved860, 860, 4);
PIN_FIELD(CanSignalData, factor, 864, 8);
PIN_FIELD(CanSignalData, offset, 872, 8);
PIN_FIELD(CanSignalData, minimum, 880, 8);
PIN_FIELD(CanSignalData, maximum, 888, 8);
PIN_FIELD(CanSignalData, numValueDescriptions, 896, 4);
PIN_FIELD(CanSignalData, startValue, 900, 4);
PIN_FIELD(CanSignalData, inactiveValue, 904, 4);
PIN_FIELD(CanSignalData, unitAsWritten, 908, 33);
PIN_FIELD(CanSignalData, reserved941, 941, 3);

PIN_SIZE(CanSignalEnumData, 260);
PIN_FIELD(CanSignalEnumData, value, 0, 4);
PIN_FIELD(CanSignalEnumData, text, 4, 256);

PIN_SIZE(bool, 1);

PIN_CODE(TABRIN_STATUS_READING, 0);
PIN_CODE(TABRIN_STATUS_WRITING, 1);
PIN_CODE(TABRIN_STATUS_CLOSED, 2);
PIN_CODE(TABRIN_STATUS_PATH_TOO_LONG, 3);
PIN_CODE(TABRIN_STATUS_PATH_INVALID, 4);
PIN_CODE(TABRIN_STATUS_PATH_EMPTY, 5);
PIN_CODE(TABRIN_STATUS_NOT_OPENED, 6);
PIN_CODE(TABRIN_STATUS_FAILED, 8);
PIN_CODE(TABRIN_STATUS_END_OF_FILE, 9);

PIN_CODE(TABRIN_ERROR_MESSAGE_ID, 0);
PIN_CODE(TABRIN_ERROR_MESSAGE_NAME, 1);
PIN_CODE(TABRIN_ERROR_MESSAGE_LENGTH, 2);
PIN_CODE(TABRIN_ERROR_SIGNAL_NAME, 3);
PIN_CODE(TABRIN_ERROR_SIGNAL_BITS, 4);
PIN_CODE(TABRIN_ERROR_SIGNAL_SCALE, 5);
PIN_CODE(TABRIN_ERROR_SIGNAL_RANGE, 6);

PIN_CODE(TABRIN_PROTOCOL_NONE, 0);
PIN_CODE(TABRIN_PROTOCOL_J1939, 1);
PIN_CODE(TABRIN_PROTOCOL_NMEA2000, 2);

PIN_CODE(TABRIN_MULTIPLEX_NONE, 0);
PIN_CODE(TABRIN_MULTIPLEX_MULTIPLEXOR, 1);
PIN_CODE(TABRIN_MULTIPLEX_MULTIPLEXED, 2);

PIN_CODE(TABRIN_BYTE_ORDER_BIG_ENDIAN, 0);
PIN_CODE(TABRIN_BYTE_ORDER_LITTLE_ENDIAN, 1);

PIN_CODE(TABRIN_VALUE_UNSIGNED, 0);
PIN_CODE(TABRIN_VALUE_SIGNED, 1);
PIN_CODE(TABRIN_VALUE_FLOAT, 2);
PIN_CODE(TABRIN_VALUE_DOUBLE, 3);

PIN_CODE(TABRIN_ORDER_IDENTIFIER, 0);
PIN_CODE(TABRIN_ORDER_NAME, 1);
PIN_CODE(TABRIN_ORDER_DATABASE, 2);
