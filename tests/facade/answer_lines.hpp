#pragma once

// The answers of `fennrick run`: one JSON document per output line.

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace fnrk::facade::testing {

inline std::vector<nlohmann::json> AnswerLines(const std::string& out) {
    std::vector<nlohmann::json> answers;
    std::istringstream lines(out);
    std::string line;
    while (std::getline(lines, line)) answers.push_back(nlohmann::json::parse(line));
    return answers;
}

}  // namespace fnrk::facade::testing
