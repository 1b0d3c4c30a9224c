// fennrick run [SCRIPT|-] [--list]: one façade driven by JSON lines, one step per line.
// fennrick call MEMBER [ARG...]: one call on a session built from the options.

#include <fstream>
#include <iostream>
#include <map>
#include <memory>

#include "cli/command_registry.hpp"
#include "cli/facade_json.hpp"
#include "cli/facade_session.hpp"
#include "facade/member_table.hpp"

namespace fnrk::cli {
namespace {

using facade::FacadeError;
using facade::MemberKind;
using facade::MemberTable;
using facade::Variant;
using nlohmann::json;
using Answer = nlohmann::ordered_json;

// The by-reference variables of a run: a {"ref": NAME} argument without "value" takes the
// variable's last value, so an object (a declaration document) travels from step to step.
using RefVariables = std::map<std::string, Variant>;

Answer ErrorAnswer(Answer answer, std::int32_t number, const std::string& description) {
    answer["error"] = {{"number", number}, {"description", description}};
    return answer;
}

Answer CallStep(facade::FnrkRoutines& routines, const json& step, RefVariables& variables) {
    const std::string member = step.at("call").get<std::string>();
    Answer answer = {{"call", member}};
    const json arguments = step.value("args", json::array());
    if (!arguments.is_array()) throw CommandFailure("\"args\" must be an array");
    std::vector<Variant> values;
    std::vector<std::pair<std::string, std::size_t>> refs;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const json& argument = arguments[i];
        const std::string where = "args[" + std::to_string(i) + "]";
        if (argument.is_object() && argument.contains("ref")) {
            const std::string name = argument.at("ref").get<std::string>();
            refs.emplace_back(name, i);
            values.push_back(argument.contains("value")
                                 ? VariantFromJson(argument.at("value"), where)
                                 : variables[name]);
        } else {
            values.push_back(VariantFromJson(argument, where));
        }
    }
    const Variant result =
        MemberTable::Instance().Invoke(routines, member, MemberKind::Method, values);
    answer["result"] = JsonFromVariant(result);
    if (!refs.empty()) {
        Answer out = Answer::object();
        for (const auto& [name, index] : refs) {
            variables[name] = values[index];
            out[name] = JsonFromVariant(values[index]);
        }
        answer["refs"] = out;
    }
    return answer;
}

// One line of a script; FacadeError and CommandFailure become the step's error answer.
Answer RunStep(facade::FnrkRoutines& routines, const std::string& line, RefVariables& variables,
               bool& failed) {
    Answer answer = Answer::object();
    try {
        const json step = json::parse(line);
        if (!step.is_object()) throw CommandFailure("a step is a JSON object");
        if (step.contains("call")) {
            answer = {{"call", step.at("call")}};
            return CallStep(routines, step, variables);
        }
        std::vector<Variant> values;
        if (step.contains("get")) {
            answer = {{"get", step.at("get")}};
            const std::string name = step.at("get").get<std::string>();
            answer["value"] = JsonFromVariant(
                MemberTable::Instance().Invoke(routines, name, MemberKind::PropertyGet, values));
            return answer;
        }
        if (step.contains("set")) {
            answer = {{"set", step.at("set")}};
            const std::string name = step.at("set").get<std::string>();
            values.push_back(VariantFromJson(step.value("value", json()), "value"));
            MemberTable::Instance().Invoke(routines, name, MemberKind::PropertyPut, values);
            return answer;
        }
        throw CommandFailure("a step has \"call\", \"get\" or \"set\"");
    } catch (const FacadeError& error) {
        failed = true;
        return ErrorAnswer(answer, error.number(), error.what());
    } catch (const json::exception& error) {
        failed = true;
        return ErrorAnswer(answer, facade::kErrInvalidCall, error.what());
    } catch (const CommandFailure& error) {
        failed = true;
        return ErrorAnswer(answer, facade::kErrInvalidCall, error.what());
    }
}

struct RunOptions {
    std::string script = "-";
    bool list = false;
    FacadeSessionOptions session;
};

int RunScript(const RunOptions& options) {
    if (options.list) {
        for (const facade::Member& member : MemberTable::Instance().Members()) {
            std::cout << facade::DescribeMember(member) << "\n";
        }
        return 0;
    }
    std::ifstream file;
    if (options.script != "-") {
        file.open(options.script);
        if (!file) throw CommandFailure("cannot read " + options.script);
    }
    std::istream& in = options.script == "-" ? std::cin : file;
    facade::FnrkRoutines routines;
    StartFacadeSession(routines, options.session);
    RefVariables variables;
    bool failed = false;
    std::string line;
    while (std::getline(in, line)) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        std::cout << RunStep(routines, line, variables, failed).dump() << std::endl;
    }
    return failed ? 1 : 0;
}

struct CallOptions {
    std::string member;
    std::vector<std::string> arguments;
    FacadeSessionOptions session;
};

// A command-line argument as a JSON value; plain text that is no JSON is a string.
Variant ArgumentValue(const std::string& text, std::size_t index) {
    json value;
    try {
        value = json::parse(text);
    } catch (const json::exception&) {
        return Variant(text);
    }
    return VariantFromJson(value, "argument " + std::to_string(index + 1));
}

int CallMember(const CallOptions& options) {
    facade::FnrkRoutines routines;
    StartFacadeSession(routines, options.session);
    std::vector<Variant> values;
    for (std::size_t i = 0; i < options.arguments.size(); ++i) {
        values.push_back(ArgumentValue(options.arguments[i], i));
    }
    Answer answer = {{"call", options.member}};
    try {
        const Variant result =
            MemberTable::Instance().Invoke(routines, options.member, MemberKind::Method, values);
        answer["result"] = JsonFromVariant(result);
        const facade::Member* member =
            MemberTable::Instance().Find(options.member, MemberKind::Method);
        Answer refs = Answer::object();
        for (std::size_t i = 0; i < member->args.size() && i < values.size(); ++i) {
            if (member->args[i].byRef) refs[std::to_string(i + 1)] = JsonFromVariant(values[i]);
        }
        if (!refs.empty()) answer["refs"] = refs;
    } catch (const FacadeError& error) {
        std::cout << ErrorAnswer(answer, error.number(), error.what()).dump() << std::endl;
        return 1;
    }
    std::cout << answer.dump() << std::endl;
    return 0;
}

void SetUpRunCommands(CLI::App& app) {
    auto run = std::make_shared<RunOptions>();
    auto* runCommand = app.add_subcommand(
        "run", "drive one FnrkRoutines from JSON lines (a file, or standard input with -)");
    runCommand->add_option("script", run->script, "the script of JSON lines; - for standard input");
    runCommand->add_flag("--list", run->list,
                         "list every member: name, kind, argument kinds (by-reference marked)");
    AddFacadeSessionOptions(*runCommand, run->session);
    runCommand->callback([run] {
        if (const int status = RunScript(*run); status != 0) throw CommandFailure("", status);
    });

    auto call = std::make_shared<CallOptions>();
    auto* callCommand = app.add_subcommand(
        "call", "call one member of FnrkRoutines; arguments are JSON values, plain text a string");
    callCommand->add_option("member", call->member, "the member's name")->required();
    callCommand->add_option("args", call->arguments, "the member's arguments");
    AddFacadeSessionOptions(*callCommand, call->session);
    callCommand->callback([call] {
        if (const int status = CallMember(*call); status != 0) throw CommandFailure("", status);
    });
}

const CommandRegistration kRunCommands("run", SetUpRunCommands);

}  // namespace
}  // namespace fnrk::cli
