#include "cli/commands/service_commands.h"

#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "prefsmyprefs.h"

#include <iostream>

namespace cli {

namespace {

/** The end of the input is a no: nobody is there to want a mail. */
bool AskOnTerminal() {
  std::string line;
  while (std::cout << " [y/n] " << std::flush && std::getline(std::cin, line)) {
    if (line == "y" || line == "yes") return true;
    if (line == "n" || line == "no") return false;
  }
  std::cout << "\n";
  return false;
}

/** The module says so when the second request got no answer. */
const char* const kMailProblem = "There was a problem sending the email";

/** Most bytes of a dialog's text that are shown. */
const std::size_t kMostShown = 500;

/** What a server sent reaches the terminal as plain text of bounded length. */
std::string Plain(const std::string& text) {
  std::string plain = text.substr(0, kMostShown);
  for (char& c : plain)
    if ((unsigned char)c < 0x20 || c == 0x7f) c = ' ';
  return text.size() > kMostShown ? plain + "..." : plain;
}

/** Shows one dialog of the module on the terminal and gives what is pressed. */
GEMB_R Show(const std::string& text, GEMB flags, Consent consent) {
  std::cout << Plain(text);
  if ((flags & 0xf) != GEMB_YESNO) {
    std::cout << "\n";
    return GEMB_R_OK;
  }
  if (consent == Consent::AskOnTerminal) return AskOnTerminal() ? GEMB_R_YES : GEMB_R_NO;
  std::cout << (consent == Consent::Yes ? " yes\n" : " no\n");
  return consent == Consent::Yes ? GEMB_R_YES : GEMB_R_NO;
}

} // namespace

int RunUpdateCheck(Consent consent) {
  CloudSession session({});
  host::Application& application = session.App();
  BaseList2D* page = FindPreferencesPage(application);
  application.GetDialogs().SetInteractive(
      [consent](const std::string& text, GEMB flags) { return Show(text, flags, consent); });
  const std::size_t firstLine = application.GetConsole().Lines().size();
  application.PressButton(page, KELVRA_PREFS_CHECK_UPDATE);
  PrintConsole(application.GetConsole(), firstLine);
  const auto& shown = application.GetDialogs().Shown();
  if (!shown.empty())
    return shown.back().text.find(kMailProblem) == std::string::npos ? kExitWhole : kExitIncomplete;
  // The check itself is silent then, as in the dialog; on a terminal a reason is expected.
  if (ElementText(page, KELVRA_PREFS_ORDER_REFERENCE, "order_reference").empty())
    std::cerr
        << "kelvra: the update check needs an order reference (kelvra prefs set order_reference REFERENCE)\n";
  else
    std::cerr << "kelvra: the update server gave no answer\n";
  return kExitIncomplete;
}

} // namespace cli
