#pragma once
// frmFiltresVignette: up to four states of the picture under filters, kept as
// full copies and shown as thumbnails; a click gives one back to the filters.
#include <QWidget>
#include <array>

#include "imaging/Bitmap.h"

class QLabel;

namespace tg {

class cAdvancedImagery;
class frmFiltres;
struct SessionRecord;

class frmFiltresVignette : public QWidget {
  Q_OBJECT

 public:
  frmFiltresVignette(SessionRecord& session, cAdvancedImagery& ai, frmFiltres& filtres, QWidget* parent = nullptr);
  ~frmFiltresVignette() override;

  // Keeps ImageFiltre in the first free slot; with four kept, the oldest goes.
  void cmdConserver();
  // Slot i back into ImageFiltre, shown; nothing for an empty slot.
  void imgVignette(int i);
  void imgOriginale();
  void cmdEffacerVignette();
  bool Occupe(int i) const { return !images_[size_t(i)].Vide(); }
  const Bitmap& Image(int i) const { return images_[size_t(i)]; }

 protected:
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void MontrerVignette(int i);

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  frmFiltres& filtres_;
  std::array<Bitmap, 4> images_;
  QLabel* imgVignette_[4] = {};
  QLabel* imgOriginale_ = nullptr;
};

}  // namespace tg
