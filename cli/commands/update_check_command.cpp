#include "cli/commands/commands.h"

#include "cli/commands/output/console_lines.h"
#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "host/base/printable.h"
#include "kelvra_messages.h"
#include "prefsmyprefs.h"

#include <iostream>

namespace cli {

namespace {

/** How the update check's question is answered. */
enum class Consent { AskOnTerminal, Yes, No };

/** The end of the input means no: nobody is there who could want a mail. */
bool AskOnTerminal() {
  std::string line;
  while (std::cout << " [y/n] " << std::flush && std::getline(std::cin, line)) {
    if (line == "y" || line == "yes") return true;
    if (line == "n" || line == "no") return false;
  }
  std::cout << "\n";
  return false;
}

/** Most characters of a dialog's text that are shown: it may hold what a server sent. */
constexpr std::size_t kMostShown = 500;

/** Shows one dialog of the module on the terminal and returns the button that is pressed. */
GEMB_R Show(const std::string& text, GEMB flags, Consent consent) {
  std::cout << host::Printable(host::Shortened(text, kMostShown));
  if ((flags & 0xf) != GEMB_YESNO) {
    std::cout << "\n";
    return GEMB_R_OK;
  }
  if (consent == Consent::AskOnTerminal) return AskOnTerminal() ? GEMB_R_YES : GEMB_R_NO;
  std::cout << (consent == Consent::Yes ? " yes\n" : " no\n");
  return consent == Consent::Yes ? GEMB_R_YES : GEMB_R_NO;
}

/** The exit status for KELVRA_UPDATE_...; throws std::runtime_error where the server was not asked or is
 * silent. */
int StatusOf(LONG outcome) {
  switch (outcome) {
  // The module's own check says nothing in these two cases; on a terminal a reason is expected.
  case KELVRA_UPDATE_NOT_ASKED:
    throw std::runtime_error(
        "the update check needs an order reference (kelvra prefs set order_reference REFERENCE)");
  case KELVRA_UPDATE_NO_ANSWER:
    throw std::runtime_error("the update server gave no answer");
  case KELVRA_UPDATE_MAIL_FAILED:
    return kExitIncomplete;
  default:
    return kExitWhole;
  }
}

int RunUpdateCheck(Consent consent) {
  CloudSession session({});
  host::Application& application = session.App();
  BaseList2D* page = FindPreferencesPage(application);
  application.GetDialogs().SetInteractive(
      [consent](const std::string& text, GEMB flags) { return Show(text, flags, consent); });
  const ConsoleLines console(application.GetConsole());
  application.PressButton(page, KELVRA_PREFS_CHECK_UPDATE);
  console.Print();
  KelvraUpdateCheck check = {1, KELVRA_UPDATE_NOT_ASKED};
  page->Message(KELVRA_MESSAGE_UPDATE_CHECK, &check);
  return StatusOf(check.outcome);
}

} // namespace

Run AddUpdateCheck(CLI::App& command) {
  const auto yes = std::make_shared<bool>(false), no = std::make_shared<bool>(false);
  CLI::Option* answer = command.add_flag("--yes", *yes, "Answer the question with yes");
  command.add_flag("--no", *no, "Answer the question with no")->excludes(answer);
  return [yes, no] {
    return RunUpdateCheck(*yes ? Consent::Yes : *no ? Consent::No : Consent::AskOnTerminal);
  };
}

} // namespace cli
