#include "forms/graph2.h"

#include <initializer_list>

namespace velumar {

namespace {

void PlaceAllIn(const Control& container, std::initializer_list<Control*> controls) {
  for (Control* control : controls) control->PlaceIn(container);
}

}  // namespace

Graph2::Graph2() : Form({"graph2", "PRINT PREVIEW", 9825, 7695, true}) {
  SetKeepsKeys(true);
  PlaceAllIn(Picture1, {&Picture2, &Line1});
  PlaceAllIn(Frame1, {&Frame2, &Frame3, &cmdcancel, &cmdPrint});
  PlaceAllIn(Frame2, {&HScroll2, &Label1});
  PlaceAllIn(Frame3, {&Label2, &chtscroll0, &Label3, &chtscroll1});
}

}  // namespace velumar
