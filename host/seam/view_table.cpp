// Entries for the view while it draws.
#include "c4d_os.h"
#include "host/seam/os_tables.h"
#include "host/view/view_state.h"

namespace host {

namespace {

enum { kIsShadowPass = 1889, kIsRenderAsEditor = 1890, kIsPrepass = 1891, kIsPickPass = 1892 };

struct ViewEntries {
  static void GetFrame(const BaseView* bv, LONG* left, LONG* top, LONG* right, LONG* bottom) {
    const ViewState* view = ViewState::Of((const BaseDraw*)bv);
    *left = *top = 0;
    *right = view->target->Width() - 1;
    *bottom = view->target->Height() - 1;
  }
  static void GetDrawParam(const BaseDraw* bd, LONG id, GeData* data) {
    switch (id) {
    case BASEDRAW_DRAWPORTTYPE:
      *data = GeData(ViewState::Of(bd)->drawPortType);
      break;
    case kIsShadowPass:
    case kIsRenderAsEditor:
    case kIsPrepass:
    case kIsPickPass:
      *data = GeData(0);
      break;
    default:
      *data = GeData();
    }
  }
  static void SetMatrix_Matrix(BaseDraw* bd, BaseObject*, const Matrix& mg) {
    ViewState::Of(bd)->objectMatrix = mg;
  }
  static Bool TestBreak(BaseDraw*) { return C4DOS.general->TestBreak(C4DOS.general->GetCurrentThread()); }
  static BaseDocument* GetHelpDocument(BaseDrawHelp* bh) { return reinterpret_cast<DrawHelp*>(bh)->document; }
  static void GetHelpMg(BaseDrawHelp* bh, Matrix* m) { *m = reinterpret_cast<DrawHelp*>(bh)->global; }
};

} // namespace

HOST_BIND(View, ViewEntries)

} // namespace host
