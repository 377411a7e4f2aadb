// The view that draws, and the object that is drawn in it.
#pragma once

#include "c4d_nodes.h"

class BaseView : public BaseList2D {
public:
  void GetFrame(LONG* left, LONG* top, LONG* right, LONG* bottom);
};

class BaseDraw : public BaseView {
public:
  /** Draw parameters (BASEDRAW_DRAWPORTTYPE...), not the settings of the view. */
  GeData GetDrawParam(LONG id);
  /** Space of what is drawn next: the object's axes in world space. op may be NULL. */
  void SetMatrix_Matrix(BaseObject* op, const Matrix& mg);
  Bool TestBreak();
};

class BaseDrawHelp : public HostOwned {
public:
  BaseDocument* GetDocument();
  /** Global matrix of the drawn object, right for instances too. */
  Matrix GetMg();
};
