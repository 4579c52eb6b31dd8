#include "app/command_line_help.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "app/command_line.h"
#include "app/environment_variables.h"
#include "base/version.h"

namespace {

std::string optionColumn(const OptionDescription& option) {
    std::string column = option.text;
    if (option.value) column += option.value;
    return column;
}

// One line of a list: the name, then its description in the column after the longest name.
std::string listLine(const std::string& name, size_t width, const char* description) {
    return "  " + name + std::string(width > name.size() ? width - name.size() + 2 : 2, ' ') + description + '\n';
}

}  // namespace

std::string helpText() {
    const std::vector<OptionDescription> options = describedOptions();
    size_t width = 0;
    for (const OptionDescription& option : options) width = std::max(width, optionColumn(option).size());

    std::string text =
        "Usage: lumenscope [OPTION]...\n"
        "Shows what the graphics hardware and drivers of this machine are and can do.\n"
        "An option counts wherever it stands, inside a longer word too; case matters, unknown words are ignored,\n"
        "and a number follows its '=' directly. With a report option the reports are written to the working\n"
        "directory and the program ends; without one the main window opens. Options that begin with '--' are\n"
        "whole words, their value after '='; an unknown one ends the program with status 2.\n"
        "The reports and the window give the machine, its GPUs, OpenGL, OpenCL, CUDA and Vulkan.\n"
        "\n"
        "Options:\n";
    for (const OptionDescription& option : options) text += listLine(optionColumn(option), width, option.description);
    text += "\nEnvironment:\n";
    for (const EnvironmentDescription& variable : kDescribedEnvironment)
        text += listLine(variable.name, width, variable.description);
    return text;
}

std::string versionText() {
    return std::string(lumenscope::kDisplayName) + " " + lumenscope::kVersionText + "\n";
}

std::string requestedInformation(const char* line) {
    if (helpRequested(line)) return helpText();
    if (versionRequested(line)) return versionText();
    return {};
}
