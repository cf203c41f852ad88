// Files to read while memory runs out.
#pragma once

#include <string>
#include <string_view>

namespace tabrin_test {

inline std::string Replaced(std::string text, std::string_view what, const std::string& with) {
    for (size_t pos = text.find(what); pos != std::string::npos; pos = text.find(what, pos + with.size())) {
        text.replace(pos, what.size(), with);
    }
    return text;
}

// All that the library reads, in texts that are too long to be kept without memory of their own; # is a number.
inline constexpr std::string_view kDefinitions =
    "VERSION \"1.0\"\r\n\r\n"
    "BU_: EngineControlUnitOfTheCar GatewayOfTheWholeVehicle\r\n"
    "BA_DEF_ \"BusType\" STRING ;\r\n"
    "BA_DEF_ \"J1939PGN\" INT 0 1;\r\n"
    "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
    "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic transmission\",\"On every change of a signal\",\"None\";\r\n"
    "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 60000;\r\n"
    "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
    "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 255;\r\n"
    "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 255;\r\n"
    "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n"
    "BA_DEF_DEF_ \"J1939PGN\" 1;\r\n"
    "BA_DEF_DEF_ \"GenMsgSendType\" \"Cyclic transmission\";\r\n"
    "BA_DEF_DEF_ \"GenMsgCycleTime\" 10;\r\n"
    "BA_DEF_DEF_ \"GenSigStartValue\" 3;\r\n";
inline constexpr std::string_view kMessage =
    "BO_ 25# StateOfTheEngineInAllItsDetails#: 16 EngineControlUnitOfTheCar\r\n"
    " SG_ SameNameForMoreThanOneSignal m2 : 8|8@1+ (0.4,0) [0|102] \"%\" Kestrune\r\n"
    " SG_ PageOfTheMultiplexedMessage M : 0|4@1+ (1,0) [0|15] \"\" GatewayOfTheWholeVehicle\r\n"
    " SG_ TemperatureOfTheCoolingWater m1 : 8|8@1- (0.5,-40) [87.5|-40] \"\xC2\xB0"
    "C behind the cooler\" GatewayOfTheWholeVehicle,EngineControlUnitOfTheCar\r\n"
    " SG_ SameNameForMoreThanOneSignal m3 : 16|8@0+ (1,0) [0|255] \"\" Kestrune\r\n"
    " SG_ SameNameForMoreThanOneSignal m4 : 24|8@0+ (1,0) [0|255] \"\" Kestrune\r\n"
    " SG_ SameNameAgain m5 : 24|8@0+ (1,0) [0|255] \"\" GatewayOfTheWholeVehicle\r\n"
    " SG_ SameNameAgain m6 : 24|8@0+ (1,0) [0|255] \"\" GatewayOfTheWholeVehicle\r\n"
    " SG_ RatioInSinglePrecision : 32|32@1- (1,0) [-1|1] \"\" GatewayOfTheWholeVehicle\r\n"
    " SG_ AngleInDoublePrecision : 64|64@1- (0.001,0) [0|360] \"degrees of an angle\" GatewayOfTheWholeVehicle\r\n"
    "BO_ faulty# NeitherThisOneNorItsSignals: 8 EngineControlUnitOfTheCar\r\n"
    " SG_ Lost : 0|8@1+ (1,0) [0|0] \"\" Kestrune\r\n"
    "BO_ 26# Other_#: 8 Kestrune\r\n"
    " SG_ Faulty : 0|8@1+ (1;0) [0|0] \"\" Kestrune\r\n";
inline constexpr std::string_view kAboutMessage =
    "CM_ BO_ 25# \"A comment on message # that runs\r\nover two lines\";\r\n"
    "CM_ SG_ 25# TemperatureOfTheCoolingWater \"Behind the \\\"cooler\\\", in message #\";\r\n"
    "BA_ \"Kestrune_Msg_Name\" BO_ 25# \"State of the engine in all its details (#)\";\r\n"
    "BA_ \"GenMsgSendType\" BO_ 25# 1;\r\n"
    "BA_ \"GenMsgCycleTime\" BO_ 25# 20;\r\n"
    "BA_ \"Kestrune_Sig_Name\" SG_ 25# TemperatureOfTheCoolingWater \"Temperature of the cooling water (#)\";\r\n"
    "BA_ \"GenSigStartValue\" SG_ 25# PageOfTheMultiplexedMessage 1;\r\n"
    "BA_ \"GenSigInactiveValue\" SG_ 25# PageOfTheMultiplexedMessage 15;\r\n"
    "VAL_ 25# PageOfTheMultiplexedMessage 2 \"Two, which is in the middle\" 0 \"Nothing at all to be seen here\" "
    "15 \"Signal not available\" 2 \"Two, described once more\";\r\n"
    "SIG_VALTYPE_ 25# RatioInSinglePrecision : 1;\r\n"
    "SIG_VALTYPE_ 25# AngleInDoublePrecision : 2;\r\n";

inline std::string EverythingText(int messages) {
    std::string text(kDefinitions);
    for (const std::string_view part : {kMessage, kAboutMessage}) {
        for (int i = 0; i < messages; ++i) {
            text += Replaced(std::string(part), "#", std::to_string(i));
        }
    }
    return text;
}

// Longer than what is read at once.
inline std::string LongStatementsText() {
    const std::string tail(150000, 'x');
    return "BO_ 1 M: 8 N " + tail + "\n SG_ S : 0|8@1+ (1,0) [0|0] \"" + tail + "\" N\nCM_ BO_ 1 \"" + tail +
           "\";\nBA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\nBA_ \"Kestrune_Msg_Name\" BO_ 1 \"" + tail + "\";\n";
}

}  // namespace tabrin_test
