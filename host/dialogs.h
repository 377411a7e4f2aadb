// The public face of the scripted dialogs: what a driver queues answers with and reads the questions from.
#pragma once

#include "host/base/dialogs.h"
