// Elements of the preferences page. They are stored under container keys that differ from these numbers.
#ifndef KELVRA_PREFSMYPREFS_H
#define KELVRA_PREFSMYPREFS_H

enum {
  KELVRA_PREFS_VERSION = 1000,
  KELVRA_PREFS_ORDER_REFERENCE = 1001,
  KELVRA_PREFS_REGISTRATION_KEY = 1002,
  KELVRA_PREFS_REGISTER = 1003, // button
  KELVRA_PREFS_STATUS = 1006,
  KELVRA_PREFS_CHECK_UPDATE = 1007, // button

  KELVRA_PREFS_GROUP_REGISTRATION = 2001
};

#endif
