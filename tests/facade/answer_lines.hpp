#pragma once

// The lines of a `fennrick run` script, and its answers: one JSON document per output line.

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace fnrk::facade::testing {

// One step calling `member` with `args`; a wrapped service gets the caller's (empty) table
// registry first.
inline std::string ScriptStep(const std::string& member,
                              const nlohmann::json& args = nlohmann::json::array(),
                              bool wrapped = true) {
    nlohmann::json all = nlohmann::json::array();
    if (wrapped) all.push_back(nlohmann::json::parse(R"({"registry": []})"));
    for (const nlohmann::json& arg : args) all.push_back(arg);
    return nlohmann::json{{"call", member}, {"args", all}}.dump() + "\n";
}

inline std::vector<nlohmann::json> AnswerLines(const std::string& out) {
    std::vector<nlohmann::json> answers;
    std::istringstream lines(out);
    std::string line;
    while (std::getline(lines, line)) answers.push_back(nlohmann::json::parse(line));
    return answers;
}

}  // namespace fnrk::facade::testing
