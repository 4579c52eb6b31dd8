#include "app/no_display_notice.h"

#include <cstdio>
#include <string>

#include "app/app_log.h"
#include "base/version.h"

void reportNoDisplay(const char* why) {
    const char* reason = (why && *why) ? why : "no display was found";
    std::fprintf(stderr,
                 "%s cannot open its window: %s.\n"
                 "The reports need no window: start it with /exp_txt_report, /exp_xml_report or /exp_json_report "
                 "(any of them, together if you like) and it writes report.txt, report.xml or report.json into "
                 "the working directory and exits. For the window, start it from a desktop session, where DISPLAY "
                 "or WAYLAND_DISPLAY is set, or under xvfb-run.\n",
                 lumenscope::kDisplayName, reason);
    std::fflush(stderr);
    std::string oneLine = reason;
    for (char& c : oneLine)
        if (c == '\n' || c == '\r') c = ' ';
    appLog().write("No display: %s. The window cannot open; batch reports: /exp_txt_report, /exp_xml_report, "
                   "/exp_json_report.",
                   oneLine.c_str());
}
