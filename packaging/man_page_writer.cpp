// Writes the manual page lumenscope(1) from the option table that --help prints, so the two never disagree.
// Usage: man_page_writer OUTPUT_FILE

#include <cstdio>
#include <fstream>
#include <string>

#include "app/command_line.h"
#include "app/environment_variables.h"
#include "base/version.h"

namespace {

// roff reads a backslash as an escape and a leading dot or quote as a request; "\-" keeps a minus a minus, so
// that "--help" can be searched for and copied from the rendered page.
std::string roffText(const char* text, bool minusSigns) {
    std::string out;
    if (*text == '.' || *text == '\'') out += "\\&";
    for (const char* c = text; *c; ++c) {
        if (*c == '\\')
            out += "\\e";
        else if (*c == '-' && minusSigns)
            out += "\\-";
        else
            out += *c;
    }
    return out;
}

std::string optionsSection() {
    std::string text = ".SH OPTIONS\n";
    for (const OptionDescription& option : describedOptions()) {
        text += ".TP\n";
        if (option.value)
            text += ".BI " + roffText(option.text, true) + " " + roffText(option.value, false) + "\n";
        else
            text += ".B " + roffText(option.text, true) + "\n";
        text += roffText(option.description, false) + "\n";
    }
    return text;
}

std::string environmentSection() {
    std::string text = ".SH ENVIRONMENT\n";
    for (const EnvironmentDescription& variable : kDescribedEnvironment)
        text += ".TP\n.B " + roffText(variable.name, false) + "\n" + roffText(variable.description, false) + "\n";
    return text;
}

std::string manPage() {
    const char* version = lumenscope::kVersionText;
    const std::string name = lumenscope::kDisplayName;

    std::string page = ".\\\" Written by man_page_writer from the program's option table; edit the table, not this.\n";
    page += ".TH LUMENSCOPE 1 \"\" \"" + name + " " + version + "\" \"User Commands\"\n";
    // Option names are long words with underscores: neither hyphenate nor stretch them.
    page += ".nh\n.ad l\n";
    page +=
        ".SH NAME\n"
        "lumenscope \\- show what the graphics hardware and drivers of this machine are and can do\n"
        ".SH SYNOPSIS\n"
        ".B lumenscope\n"
        ".RI [ option ]...\n"
        ".SH DESCRIPTION\n"
        ".B lumenscope\n"
        "finds every GPU of the machine and names it from its PCI ids, reads its live temperatures, fan speeds,\n"
        "clocks, load, voltage and power, opens a hidden OpenGL context and lists its version, extensions and\n"
        "limits, lists the OpenCL platforms and devices and the CUDA devices, reads the Vulkan instance and\n"
        "every Vulkan device (properties, limits, features, extensions, memory heaps, queue families and format\n"
        "support; a GPU that sleeps is kept out of it), and runs OpenGL and OpenCL demos that double as\n"
        "benchmarks. It writes what it finds as a text, XML or JSON report.\n"
        ".PP\n"
        "An option counts wherever it stands on the command line, inside a longer word too. Case matters,\n"
        "unknown words are ignored, and a number follows its\n"
        ".B =\n"
        "directly. Where two options set one value, the one further down the list below wins, wherever it\n"
        "stands. With a report option the program writes its reports to the working directory and ends;\n"
        "without one the main window opens.\n";
    page += optionsSection();
    page += environmentSection();
    page +=
        ".SH FILES\n"
        "All in the working directory of the run but the media.\n"
        ".TP\n"
        ".I Lumenscope_log.txt\n"
        "the log, written afresh at every run\n"
        ".TP\n"
        ".IR report.txt \", \" report.xml \", \" report.json\n"
        "the reports of the report options\n"
        ".TP\n"
        ".I bench_result.csv\n"
        "one row appended by each demo that ends while result logging is on\n"
        ".TP\n"
        ".I ../share/lumenscope/media/\n"
        "beside the folder of the installed program: the demos' textures, models and kernels\n"
        ".SH EXIT STATUS\n"
        "0 in every case.\n";
    return page;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_FILE\n", argv[0]);
        return 2;
    }
    const std::string page = manPage();
    std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
    out.write(page.data(), std::streamsize(page.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "%s: cannot write %s\n", argv[0], argv[1]);
        std::remove(argv[1]);
        return 1;
    }
    return 0;
}
