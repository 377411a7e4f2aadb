// The registered preferences page. The application's resource parser reads this file too: one plain enum.
#ifndef KELVRA_KELVRAPREFS_H
#define KELVRA_KELVRAPREFS_H

enum { KELVRA_PREFS_ABOUT = 1100 };

#endif
