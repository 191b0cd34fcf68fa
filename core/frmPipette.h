#pragma once
// The colour pipette: picks a colour on a reduced copy of the current picture
// and hands it to the window that asked.
#include <QDialog>

#include "imaging/Bitmap.h"

class QLabel;

namespace tg {

class cAdvancedImagery;

// Implemented by the windows that take a colour from the pipette
// (frmAjouterCartouche, frmFiltres); found by their objectName on cmdOK.
class IReceveurPipette {
 public:
  virtual ~IReceveurPipette() = default;
  // couleur: 0xBBGGRR; rouge, vert, bleu: 0 to 255.
  virtual void RecevoirCouleurPipette(int couleur, int rouge, int vert, int bleu) = 0;
};

class frmPipette : public QDialog {
  Q_OBJECT

 public:
  // Largest size of the working copy, pixels; a smaller picture keeps its size.
  static constexpr int LargeurMax = 640;
  static constexpr int HauteurMax = 480;

  frmPipette(const Bitmap& image, cAdvancedImagery& ai, QWidget* parent = nullptr);
  ~frmPipette() override;

  // Click at (x, y) of the copy: reads and shows the colour. False, after
  // "Error = " and the layer's text, when it cannot be read.
  bool ChoisirPixel(int x, int y);
  // The colour chosen, 0xBBGGRR, or -1 before any click.
  int Couleur() const { return couleur_; }
  int16_t RougeChoisi = 0, VertChoisi = 0, BleuChoisi = 0;

  // Hands the colour to frmAjouterCartouche, then to frmFiltres, those of
  // them that are loaded, and closes. With neither, closes with no effect.
  void cmdOK();
  void cmdSortir();

 protected:
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  cAdvancedImagery& ai_;
  Bitmap copie_;
  int couleur_ = -1;
  QLabel* imgImage_ = nullptr;
  QLabel* lblX_ = nullptr;
  QLabel* lblY_ = nullptr;
  QLabel* lblRVB_ = nullptr;
  QLabel* picCouleur_ = nullptr;
};

}  // namespace tg
