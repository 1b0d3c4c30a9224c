#include "cli/demo_steps.hpp"

#include <map>
#include <string>

namespace fnrk::cli {
namespace {

std::map<std::string, DemoStep>& Steps() {
    static std::map<std::string, DemoStep> steps;
    return steps;
}

}  // namespace

DemoStepRegistration::DemoStepRegistration(const char* name, DemoStep step) {
    Steps().emplace(name, step);
}

void RunDemoSteps(DemoContext& context) {
    for (const auto& [name, step] : Steps()) {
        context.out << "\n[" << name << "]\n";
        step(context);
    }
}

}  // namespace fnrk::cli
