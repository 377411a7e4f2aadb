// General functions of the host. Main thread unless said otherwise.
#pragma once

#include "c4d_nodes.h"

/** One line on the host's console. Any thread. */
void GePrint(const String& text);

void StatusSetText(const String& text);
/** 0 to 100. */
void StatusSetBar(LONG percent);
void StatusClear();

GEMB_R GeOutString(const String& text, GEMB flags);
void MessageDialog(const String& text);
Bool QuestionDialog(const String& text);

void EventAdd(EVENT flags = EVENT_0);

/** Any thread. NULL outside work that the host started. */
BaseThread* GeGetCurrentThread();
Bool GeIsMainThread();
/** Ends what the host draws on other threads and waits for it: call it before changing what is drawn. */
void StopAllThreads();
LONG GeGetCPUCount();
LONG GeGetTimer();
LReal GeGetMilliSeconds();
LONG GetC4DVersion();

/** Any thread. */
Vector TransformColor(const Vector& color, COLORSPACETRANSFORMATION transformation);

/** Settings kept under a plug-in's id with the user's preferences; NULL when there are none yet. */
BaseContainer* GetWorldPluginData(LONG id);
Bool SetWorldPluginData(LONG id, const BaseContainer& bc, Bool add = TRUE);
/** The application's own settings, live; kept with the user's preferences. */
BaseContainer* GetWorldContainerInstance();

/** Text as a number of the given FORMAT_ kind; text that is not a number gives 0. */
GeData StringToNumber(const String& text, LONG format, LONG fps);

/** Folder of the plug-in's file, and its resource folder. */
Filename GeGetPluginPath();
Filename GeGetPluginResourcePath();
