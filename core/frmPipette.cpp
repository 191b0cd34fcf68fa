#include "core/frmPipette.h"

#include "core/Icones.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Formats.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"

namespace tg {

frmPipette::frmPipette(const Bitmap& image, cAdvancedImagery& ai, QWidget* parent)
    : QDialog(parent), ai_(ai) {
  setObjectName(QStringLiteral("frmPipette"));
  setWindowTitle(QStringLiteral("Pipette"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* v = new QVBoxLayout(this);
  imgImage_ = new QLabel(this);
  imgImage_->setObjectName(QStringLiteral("imgImage"));
  imgImage_->setCursor(CurseurPipette());
  imgImage_->setMouseTracking(true);
  imgImage_->installEventFilter(this);
  imgImage_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  v->addWidget(imgImage_);

  auto* h = new QHBoxLayout;
  lblX_ = new QLabel(QStringLiteral("x="), this);
  lblX_->setObjectName(QStringLiteral("lblX"));
  lblY_ = new QLabel(QStringLiteral("y="), this);
  lblY_->setObjectName(QStringLiteral("lblY"));
  lblRVB_ = new QLabel(this);
  lblRVB_->setObjectName(QStringLiteral("lblRVB"));
  picCouleur_ = new QLabel(this);
  picCouleur_->setObjectName(QStringLiteral("picCouleur"));
  picCouleur_->setFixedSize(40, 20);
  picCouleur_->setAutoFillBackground(true);
  for (QLabel* l : {lblX_, lblY_, lblRVB_}) h->addWidget(l);
  h->addWidget(picCouleur_);
  h->addStretch(1);
  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("cmdOK"));
  connect(ok, &QPushButton::clicked, this, [this] { cmdOK(); });
  auto* sortir = new QPushButton(QStringLiteral("Sortir"), this);
  sortir->setObjectName(QStringLiteral("cmdSortir"));
  connect(sortir, &QPushButton::clicked, this, [this] { cmdSortir(); });
  h->addWidget(ok);
  h->addWidget(sortir);
  v->addLayout(h);

  // The working copy, reduced to fit the window, never enlarged.
  const auto erreur = [this] {
    Dialogues().Message(QStringLiteral("Pipette"), "Error - " + ai_.Error_GetLast(),
                        Icone::Critique);
  };
  if (ai_.IO_Copy(image, copie_)) {
    const int l = ai_.Info_Width(copie_), hh = ai_.Info_Height(copie_);
    // Smaller still on a screen that cannot hold the window at its usual
    // size: the margins, the row of values and the frame take about 80 pixels.
    const QRect zone = ZoneEcran(parent ? parent : this);
    const QMargins m = MargesCadre(this);
    const int largeurMax = std::max(160, std::min<int>(LargeurMax, zone.width() - m.left() - m.right() - 24));
    const int hauteurMax = std::max(120, std::min<int>(HauteurMax, zone.height() - m.top() - m.bottom() - 60));
    const Taille t = TailleRedimensionnee(l, hh, hh > 0 ? float(l) / float(hh) : 0.0f,
                                          float(largeurMax) / float(hauteurMax), largeurMax, hauteurMax);
    if ((t.largeur != l || t.hauteur != hh) && !ai_.Effect_Resize(copie_, t.largeur, t.hauteur, 3))
      erreur();
    QImage vue;
    if (ai_.Convert_ImageToPicture(copie_, vue)) {
      imgImage_->setPixmap(QPixmap::fromImage(vue));
      imgImage_->setFixedSize(vue.size());
    } else {
      erreur();
    }
  } else {
    erreur();
  }
  adjustSize();
  if (parent != nullptr) {
    const QWidget* haut = parent->window();
    move(haut->x() + (haut->width() - width()) / 2, haut->y() + 80);
  }
  AjusterAEcran(this);
}

frmPipette::~frmPipette() { ai_.IO_DestroyBitmap(copie_); }

bool frmPipette::ChoisirPixel(int x, int y) {
  int couleur = 0;
  if (!ai_.Color_GetPixel(copie_, x, y, couleur)) {
    Dialogues().Message(QStringLiteral("Pipette"), "Error = " + ai_.Error_GetLast(),
                        Icone::Critique);
    return false;
  }
  int r = 0, g = 0, b = 0;
  cAdvancedImagery::Color_OLE(couleur, r, g, b);
  couleur_ = couleur;
  RougeChoisi = int16_t(r);
  VertChoisi = int16_t(g);
  BleuChoisi = int16_t(b);
  lblRVB_->setText(QStringLiteral("RVB = %1 - %2 - %3").arg(r).arg(g).arg(b));
  QPalette p = picCouleur_->palette();
  p.setColor(QPalette::Window, QColor(r, g, b));
  picCouleur_->setPalette(p);
  return true;
}

void frmPipette::cmdOK() {
  // Nothing is handed over before a colour was picked.
  if (couleur_ >= 0) {
    for (const char* nom : {"frmAjouterCartouche", "frmFiltres"})
      for (QWidget* w : QApplication::topLevelWidgets())
        if (w != this && w->objectName() == QLatin1String(nom))
          if (auto* receveur = dynamic_cast<IReceveurPipette*>(w))
            receveur->RecevoirCouleurPipette(couleur_, RougeChoisi, VertChoisi, BleuChoisi);
  }
  close();
}

void frmPipette::cmdSortir() { close(); }

bool frmPipette::eventFilter(QObject* objet, QEvent* e) {
  if (objet == imgImage_) {
    if (e->type() == QEvent::MouseMove) {
      const QPoint p = static_cast<QMouseEvent*>(e)->position().toPoint();
      lblX_->setText("x=" + QString::number(p.x()));
      lblY_->setText("y=" + QString::number(p.y()));
    } else if (e->type() == QEvent::MouseButtonPress) {
      const QPoint p = static_cast<QMouseEvent*>(e)->position().toPoint();
      ChoisirPixel(p.x(), p.y());
      return true;
    }
  }
  return QDialog::eventFilter(objet, e);
}

}  // namespace tg
