// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace zel::tool {

/// One thing that happens, and what to look for in the deliveries that follow it.
struct StoryStep {
    std::string_view text;
    std::string_view command;
};

inline constexpr std::string_view storyBeginning =
    "A window with a toolbar and a content view, which has a sidebar and a card with a badge; a\n"
    "controller for the content, and a status icon outside the window. Each listens for its "
    "style.\n"
    "A line is one delivery: who is told, why, which style of which scheme, and its colours.\n"
    "\n"
    "The window opens on a light system. The sidebar is pinned to the dark scheme.\n";

inline constexpr StoryStep storySteps[] = {
    {"The system turns dark. All follow; the sidebar is not told, it has dark colours already.",
     "dark"},
    {"The card is pinned to the light scheme, and the badge inside follows its parent.",
     "pin card light"},
    {"The user chooses a light window. Card and badge have it already.", "mode always-light"},
    {"The user goes back to what the system says, which is dark.", "mode follow-system"},
    {"The system turns light again. Only those that were dark are told.", "light"},
    {"The card is let go. It would look the same, so nobody is told.", "unpin card"},
    {"The application gives its styles an orange accent: the same styles with new values, so that\n"
     "everybody is told, the sidebar of its dark one. The card's style derives from the main "
     "style\n"
     "and is computed anew; card and badge hear of both.",
     "accent #FF9500"},
};

inline constexpr std::string_view storyEnd = "\nThat was all. Nothing was stored.\n";

} // namespace zel::tool
