#include "measure/frmAppercuRtf.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/Dialogues.h"
#include "platform/Fichiers.h"

namespace tg {

QPointer<frmAppercuRtf> frmAppercuRtf::instance_;

QPrinter& ImprimanteCarnet() {
  // Never destroyed: a printer must not outlive the application's teardown.
  static QPrinter* imprimante = new QPrinter;
  return *imprimante;
}

void RemplirDocumentRapport(QTextDocument& doc, const QList<LigneRapport>& lignes,
                            const Vignette& vignette) {
  doc.clear();
  QFont police(QStringLiteral("Arial"), 8);
  doc.setDefaultFont(police);
  QTextCursor c(&doc);
  QTextCharFormat normal;
  normal.setFont(police);
  normal.setForeground(Qt::black);
  QTextCharFormat titre = normal;
  titre.setFontWeight(QFont::Bold);
  titre.setForeground(QColor(0, 0, 255));
  QTextCharFormat rubrique = normal;
  rubrique.setFontWeight(QFont::Bold);
  bool premier = true;
  for (const LigneRapport& l : lignes) {
    if (l.genre == LigneRapport::Vignette) {
      QImage img;
      if (vignette.jpeg.isEmpty() || !img.loadFromData(vignette.jpeg, "JPEG")) continue;
      if (!premier) c.insertBlock();
      doc.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("vignette")), img);
      QTextImageFormat f;
      f.setName(QStringLiteral("vignette"));
      f.setWidth(img.width());
      f.setHeight(img.height());
      c.insertImage(f);
      premier = false;
      continue;
    }
    const QTextCharFormat& f =
        l.genre == LigneRapport::TitreBloc ? titre : l.genre == LigneRapport::Rubrique ? rubrique : normal;
    // Lines of the list and the annotations may hold their own line ends.
    QString texte = l.texte;
    texte.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (texte.endsWith(QLatin1Char('\n'))) texte.chop(1);
    for (const QString& morceau : texte.split(QLatin1Char('\n'))) {
      if (!premier) c.insertBlock();
      c.insertText(morceau, f);
      premier = false;
    }
  }
}

frmAppercuRtf::frmAppercuRtf(const QList<LigneRapport>& lignes, const Vignette& vignette,
                             const QString& dossier, const QString& nomFichier, QWidget* parent)
    : QWidget(parent, Qt::Window),
      lignes_(lignes),
      vignette_(vignette),
      dossier_(dossier),
      nomFichier_(nomFichier) {
  setObjectName(QStringLiteral("frmAppercuRtf"));
  setWindowTitle(QStringLiteral("Aperçu du carnet de mesures"));
  auto* v = new QVBoxLayout(this);
  v->addWidget(new QLabel(QStringLiteral("Vous pouvez éditer cette page"), this));
  RichTextBox1_ = new QTextEdit(this);
  RichTextBox1_->setObjectName(QStringLiteral("RichTextBox1"));
  RemplirDocumentRapport(*RichTextBox1_->document(), lignes_, vignette_);
  v->addWidget(RichTextBox1_);
  auto* h = new QHBoxLayout;
  v->addLayout(h);
  const auto bouton = [this, h](const char* nom, const QString& texte) {
    auto* b = new QPushButton(texte, this);
    b->setObjectName(QLatin1String(nom));
    h->addWidget(b);
    return b;
  };
  connect(bouton("cmdSauverRtf", QStringLiteral("Enregistrer (RTF)")), &QPushButton::clicked, this,
          [this] { cmdSauverRtf(); });
  connect(bouton("cmdImprimer", QStringLiteral("Imprimer")), &QPushButton::clicked, this,
          [this] { cmdImprimer(); });
  connect(bouton("cmdQuitter", QStringLiteral("Quitter")), &QPushButton::clicked, this,
          &QWidget::close);
  // 1500 x 1000 twips (100 x 67 pixels) smaller than the screen.
  if (QScreen* ecran = QGuiApplication::primaryScreen()) {
    const QSize t = ecran->availableSize();
    resize(std::max(400, t.width() - 100), std::max(300, t.height() - 67));
  }
}

frmAppercuRtf* frmAppercuRtf::Afficher(const QList<LigneRapport>& lignes, const Vignette& vignette,
                                       const QString& dossier, const QString& nomFichier,
                                       QWidget* parent) {
  if (instance_) instance_->close();
  auto* f = new frmAppercuRtf(lignes, vignette, dossier, nomFichier, parent);
  f->setAttribute(Qt::WA_DeleteOnClose);
  instance_ = f;
  f->show();
  return f;
}

void frmAppercuRtf::cmdSauverRtf() {
  Dialogues().Message(QStringLiteral("Enregistrement"), TexteAvertissementEnregistrement(nomFichier_),
                      Icone::Information);
  const QString chemin = Dialogues().FichierEnregistrer(TitreEnregistrementCarnet(true), dossier_,
                                                        nomFichier_, FiltreEnregistrementCarnet(true));
  // Cancelled or not written: nothing more is said.
  if (!chemin.isEmpty() && !EnregistrerRtf(chemin, *RichTextBox1_->document(), vignette_))
    Dialogues().Message(windowTitle(),
                        AvecRaison(QStringLiteral("Error 75 (Erreur d'accès au chemin/fichier) in procedure "
                                                  "Enregistrer of Feuille frmAppercuRtf")),
                        Icone::Critique);
}

void frmAppercuRtf::cmdImprimer() {
  QPrintDialog d(&ImprimanteCarnet(), this);
  if (d.exec() != QDialog::Accepted) return;
  RichTextBox1_->document()->print(&ImprimanteCarnet());
}

}  // namespace tg
