// Numbers of the texts in c4d_strings.str. The application's resource parser reads this file too: one plain
// enum.
#ifndef KELVRA_C4D_SYMBOLS_H
#define KELVRA_C4D_SYMBOLS_H

enum {
  IDS_KELVRA_OBJECT = 10000,
  IDS_KELVRA_SHADER = 10001,
  IDS_KELVRA_RENDER = 10002,
  IDS_KELVRA_PREFS = 10003
};

#endif
