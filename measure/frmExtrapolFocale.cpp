#include "measure/frmExtrapolFocale.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <cmath>

#include "core/SessionRecord.h"
#include "measure/modOpTableMesure.h"
#include "platform/Dialogues.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kTitre = QStringLiteral("Extrapolation de focale");

const char* const kAide[] = {
    "Quelques recommandation importantes pour l'extrapolation de focale:",
    "En aucun cas n'utilisez un zoom numérique (zoom optique uniquement), le logiciel vous le signale si Exif présents.",
    "Toutes vos tables doivent comporter le même nom d'ap.photo que le tag Exif [Model]",
    "(en principe ce nom est récupéré automatiquement à la création d'une table)",
    "Pour extraire une série complète de focales en relation avec votre cliché, ",
    "les champs [Microscope] et [Config] doivent être tous orthographiés strictement de la même manière !",
    "En cas de doutes, vérifiez / éditez vos tables.",
    "IsExtrapolation :",
    "Il faut un minimum de 2 ou 3 tables pour calculer un coefficient mais 5 ou 6 tables ",
    "(voir plus selon votre config) permet d'avoir une plage de référence sur toute la gamme du zoom.",
    "*** En gros : Plus votre zoom à de déviation, plus il faut de tables ! ***",
    "Important : Les deux extrêmes (la plus petite et la plus grande focale) sont obligatoires !",
    "(la plus petite peut être celle utilisée uniquement en microscopie !)",
    "Aplatir la courbe de déviation :",
    "Pour réduir au maximum le taux d'erreur, il faut supprimer les valeurs les plus éloignées de la focale de votre "
    "cliché.",
    "Essayez de conserver que les deux focales les plus proches (en dessus et en dessous)",
    "Pour ceci, soit sélectionner manuellement les lignes à supprimer et cliquez sur [Effacer élément]",
    "soit utiliser le bouton [Aplatir la courbe]",
    "Infos diverses :",
    "A partir de la version 123 (der. maj), les focales ont deux décimales de précision.",
    "Vous pouvez corriger vos tables manuellement ou les refaire si nécessaire.",
    "(je n'ai pas testé si cela influe beaucoup sur le résultat)",
    "Si vous avez utilisé l'extrapolation, un [*] sera visible dans l'échelle du cartouche",
    "et le tag [ExtrapolFoc=] des méta-comments sera égal à 1 ...",
    "Pour conclure, noubliez pas qu'en plus des déviations de zoom, vous pouvez cumuler des erreurs selon les "
    "objectifs utilisés ...",
    "Donc réalisez des essais !",
    "Merci d'avoir lu ces infos",
};

template <typename T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

// Graph1: one bar a row, its height the deviation, within plus or minus the scale.
class Graphe : public QWidget {
 public:
  Graphe(frmExtrapolFocale* f, QWidget* parent) : QWidget(parent), f_(f) { setMinimumSize(220, 120); }
  QStringList valeurs;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    p.setPen(Qt::gray);
    p.drawLine(0, height() / 2, width(), height() / 2);
    const int echelle = f_->EchelleGraphe();
    if (echelle <= 0 || valeurs.isEmpty()) return;
    const double largeur = double(width()) / valeurs.size();
    for (int i = 0; i < valeurs.size(); ++i) {
      double v = 0;
      LireNombre(valeurs[i], v);
      const double h = VersEntier(v) * (height() / 2.0) / echelle;
      QRectF barre(i * largeur + largeur * 0.2, height() / 2.0, largeur * 0.6, -h);
      p.fillRect(barre.normalized(), std::fabs(v) > 15 ? QColor(220, 60, 60) : QColor(60, 120, 200));
    }
  }

 private:
  frmExtrapolFocale* f_;
};

}  // namespace

frmExtrapolFocale::frmExtrapolFocale(SessionRecord& session, QWidget* appelant,
                                     std::function<void(int)> versCartouche)
    : QWidget(appelant, Qt::Window), s_(session), appelant_(appelant), versCartouche_(std::move(versCartouche)) {
  setObjectName(QStringLiteral("frmExtrapolFocale"));
  setWindowTitle(kTitre);
  auto* racine = new QVBoxLayout(this);
  auto* photo = new QGridLayout;
  auto* txtModele = Nomme(new QLineEdit(this), QStringLiteral("txtModele"));
  auto* txtFocale = Nomme(new QLineEdit(this), QStringLiteral("txtFocale"));
  auto* txtLargeur = Nomme(new QLineEdit(this), QStringLiteral("txtLargeur"));
  for (auto* t : {txtModele, txtFocale, txtLargeur}) t->setReadOnly(true);
  photo->addWidget(new QLabel(QStringLiteral("Ap. photo :"), this), 0, 0);
  photo->addWidget(txtModele, 0, 1);
  photo->addWidget(new QLabel(QStringLiteral("L. focale (zoom) :"), this), 0, 2);
  photo->addWidget(txtFocale, 0, 3);
  photo->addWidget(new QLabel(QStringLiteral("Largeur photo :"), this), 1, 0);
  photo->addWidget(txtLargeur, 1, 1);
  auto* lblRefFoc = Nomme(new QLabel(this), QStringLiteral("lblRefFoc"));
  photo->addWidget(lblRefFoc, 1, 2, 1, 2);
  racine->addLayout(photo);

  comboTable_ = Nomme(new QComboBox(this), QStringLiteral("comboTable"));
  comboIndexTable_ = Nomme(new QComboBox(this), QStringLiteral("comboIndexTable"));
  comboIndexTable_->hide();
  connect(comboTable_, &QComboBox::activated, this, [this](int i) { comboTable_Click(i); });
  racine->addWidget(comboTable_);

  auto* listes = new QHBoxLayout;
  const char* titres[3] = {"Table", "Focale (mm)", "Déviation (%)"};
  for (int i = 0; i < 3; ++i) {
    auto* colonne = new QVBoxLayout;
    colonne->addWidget(new QLabel(QString::fromUtf8(titres[i]), this));
    lstSelTable_[i] = Nomme(new QListWidget(this), QStringLiteral("lstSelTable%1").arg(i));
    colonne->addWidget(lstSelTable_[i]);
    listes->addLayout(colonne);
    // A row chosen in one list is chosen in the two others.
    connect(lstSelTable_[i], &QListWidget::currentRowChanged, this, [this](int r) {
      for (auto* l : lstSelTable_)
        if (l->currentRow() != r && r < l->count()) {
          const QSignalBlocker b(l);
          l->setCurrentRow(r);
        }
    });
  }
  auto* graphe = new Graphe(this, this);
  Graph1_ = Nomme(static_cast<QWidget*>(graphe), QStringLiteral("Graph1"));
  listes->addWidget(Graph1_, 1);
  racine->addLayout(listes);

  auto* commandes = new QHBoxLayout;
  const char* legendes[3] = {"Effacer élément", "Effacer tout", "Calculer"};
  for (int i = 0; i < 3; ++i) {
    auto* b = Nomme(new QPushButton(QString::fromUtf8(legendes[i]), this), QStringLiteral("cmdCommand%1").arg(i));
    connect(b, &QPushButton::clicked, this, [this, i] { cmdCommand(i); });
    commandes->addWidget(b);
  }
  auto* aplatir = Nomme(new QPushButton(QStringLiteral("Aplatir la courbe"), this), QStringLiteral("cmdAplatir"));
  connect(aplatir, &QPushButton::clicked, this, [this] { cmdAplatir(); });
  commandes->addWidget(aplatir);
  racine->addLayout(commandes);

  auto* valeurs = new QGridLayout;
  const char* noms[4] = {"Coefficient :", "Focale d'essai (mm) :", "µm pour 1000 pix :", "pix pour 100 µm :"};
  for (int i = 0; i < 4; ++i) {
    valeurs->addWidget(new QLabel(QString::fromUtf8(noms[i]), this), i / 2, (i % 2) * 2);
    txtValeur_[i] = Nomme(new QLineEdit(this), QStringLiteral("txtValeur%1").arg(i));
    txtValeur_[i]->setReadOnly(i != 1);
    valeurs->addWidget(txtValeur_[i], i / 2, (i % 2) * 2 + 1);
  }
  for (int i : {2, 3}) {
    QPalette p = txtValeur_[i]->palette();
    p.setColor(QPalette::Text, Qt::red);
    txtValeur_[i]->setPalette(p);
  }
  auto* essai = Nomme(new QPushButton(QStringLiteral("Essayer"), this), QStringLiteral("cmdCalculerUmPourMillePix"));
  connect(essai, &QPushButton::clicked, this, [this] { cmdCalculerUmPourMillePix(); });
  valeurs->addWidget(essai, 0, 4);
  racine->addLayout(valeurs);
  lblxPixMic_ = Nomme(new QLabel(this), QStringLiteral("lblxPixMic"));
  racine->addWidget(lblxPixMic_);

  auto* bas = new QHBoxLayout;
  auto* envoyer = Nomme(new QPushButton(QStringLiteral("Envoyer au cartouche"), this),
                        QStringLiteral("cmdEnvoyerAuCartouche"));
  envoyer->setEnabled(s_.DepuisCartouche);
  auto* annuler = Nomme(new QPushButton(QStringLiteral("Annuler"), this), QStringLiteral("cmdAnnuler"));
  auto* aide = Nomme(new QPushButton(QStringLiteral("Aide"), this), QStringLiteral("cmdAide"));
  connect(envoyer, &QPushButton::clicked, this, [this] { cmdEnvoyerAuCartouche(); });
  connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnuler(); });
  for (auto* b : {envoyer, annuler, aide}) bas->addWidget(b);
  racine->addLayout(bas);

  picAide_ = Nomme(new QWidget(this), QStringLiteral("picAide"));
  auto* la = new QVBoxLayout(picAide_);
  auto* txtAide = Nomme(new QPlainTextEdit(picAide_), QStringLiteral("txtAide"));
  txtAide->setReadOnly(true);
  QStringList lignes;
  for (const char* l : kAide) lignes << QString::fromUtf8(l);
  txtAide->setPlainText(lignes.join(u'\n'));
  auto* fermer = Nomme(new QPushButton(QStringLiteral("Fermer l'aide"), picAide_), QStringLiteral("cmdFermerAide"));
  la->addWidget(txtAide);
  la->addWidget(fermer);
  racine->addWidget(picAide_);
  picAide_->hide();
  connect(aide, &QPushButton::clicked, picAide_, &QWidget::show);
  connect(fermer, &QPushButton::clicked, picAide_, &QWidget::hide);

  // Opening.
  lblRefFoc->setText(QStringLiteral("Cliché = ") + TexteReel(s_.FocaleAPN, s_.SeparateurDecimal) +
                     QStringLiteral(" mm"));
  ListeCombo liste(comboTable_), index(comboIndexTable_);
  RemplirComboTableExrapol(liste, index, s_);
  if (comboTable_->count() < 2)
    Dialogues().Message(kTitre, QStringLiteral("Aucune équivalence trouvée pour cette image ..."), Icone::Information);
  txtModele->setText(s_.Modele.isEmpty() ? QStringLiteral("N/A") : s_.Modele);
  txtFocale->setText(s_.FocaleAPN == 0 ? QStringLiteral("0 mm ou N/A")
                                       : TexteReel(s_.FocaleAPN, s_.SeparateurDecimal) + QStringLiteral(" mm"));
  const int reference = LargeurReference(s_);
  txtLargeur->setText(reference == s_.Largeur || s_.Largeur <= 0
                          ? QStringLiteral("%1 pix").arg(reference)
                          : QStringLiteral("%1 (%2) pix").arg(reference).arg(s_.Largeur));
}

frmExtrapolFocale* frmExtrapolFocale::Afficher(SessionRecord& session, QWidget* appelant,
                                               std::function<void(int)> versCartouche) {
  auto* f = new frmExtrapolFocale(session, appelant, std::move(versCartouche));
  f->setAttribute(Qt::WA_DeleteOnClose);
  f->adjustSize();
  // Centred on its caller, kept on the screen.
  if (appelant) {
    QPoint p = appelant->frameGeometry().center() - f->rect().center();
    if (QScreen* e = appelant->screen()) {
      const QRect g = e->availableGeometry();
      p.setX(std::clamp(p.x(), g.left(), std::max(g.left(), g.right() - f->width())));
      p.setY(std::clamp(p.y(), g.top(), std::max(g.top(), g.bottom() - f->height())));
    }
    f->move(p);
  }
  f->show();
  return f;
}

SerieFocale frmExtrapolFocale::Serie() const {
  SerieFocale s;
  for (int i = 0; i < lstSelTable_[1]->count(); ++i) s.focales << lstSelTable_[1]->item(i)->text();
  for (int i = 0; i < lstSelTable_[0]->count(); ++i) s.numeros << lstSelTable_[0]->item(i)->text();
  for (int i = 0; i < lstSelTable_[2]->count(); ++i) s.deviations << lstSelTable_[2]->item(i)->text();
  return s;
}

void frmExtrapolFocale::Afficher(const SerieFocale& serie) {
  lstSelTable_[0]->clear();
  lstSelTable_[1]->clear();
  lstSelTable_[2]->clear();
  lstSelTable_[0]->addItems(serie.numeros);
  lstSelTable_[1]->addItems(serie.focales);
  lstSelTable_[2]->addItems(serie.deviations);
}

void frmExtrapolFocale::ViderResultats() {
  txtValeur_[0]->clear();
  lblxPixMic_->clear();
  static_cast<Graphe*>(Graph1_)->valeurs.clear();
  Graph1_->update();
}

void frmExtrapolFocale::comboTable_Click(int position) {
  Afficher(SerieFocale{});
  ViderResultats();
  echelle_ = 0;
  resultat_ = Extrapolation{};
  if (position <= 0) return;
  const int numero = comboIndexTable_->itemText(position).toInt();
  bool doublons = false;
  const SerieFocale serie = SerieDeLaTable(numero, s_, s_.DepuisCartouche, &doublons);
  if (doublons) Dialogues().Message(kTitre, QStringLiteral("Doublons supprimés !"), Icone::Information);
  Afficher(serie);
  Calculer();
}

void frmExtrapolFocale::cmdCommand(int index) {
  if (index == 0) {
    ViderResultats();
    const int r = lstSelTable_[0]->currentRow();
    if (r >= 0 && lstSelTable_[1]->currentRow() == r && lstSelTable_[2]->currentRow() == r)
      for (auto* l : lstSelTable_) delete l->takeItem(r);
  } else if (index == 1) {
    ViderResultats();
    Afficher(SerieFocale{});
  } else {
    Calculer();
  }
}

void frmExtrapolFocale::Calculer() {
  txtValeur_[0]->clear();
  static_cast<Graphe*>(Graph1_)->valeurs.clear();
  Graph1_->update();
  const SerieFocale serie = Serie();
  resultat_ = CalculerExtrapolation(serie, s_.FocaleAPN, s_.SeparateurDecimal);
  if (!resultat_.calcule) {
    if (serie.Nombre() < 2) {
      txtValeur_[0]->clear();
      lblxPixMic_->clear();
    }
    if (!resultat_.refus.isEmpty())
      Dialogues().Message(serie.Nombre() < 2 ? kTitre : QString(), resultat_.refus,
                          serie.Nombre() < 2 ? Icone::Exclamation : Icone::Critique);
    return;
  }
  lstSelTable_[2]->clear();
  lstSelTable_[2]->addItems(resultat_.deviations);
  txtValeur_[0]->setText(TexteReel(Arrondir(resultat_.coeff, 2), s_.SeparateurDecimal));
  lblxPixMic_->setText(TexteEchelleExtrapolee(s_.FocaleAPN, resultat_.pixPour100, s_.SeparateurDecimal));
  // The check and the graph; the scale stays for the trims that follow.
  if (echelle_ == 0) {
    bool alerte = false;
    echelle_ = EchelleDeviations(resultat_.deviations, alerte);
    if (alerte) Dialogues().Message(kTitre, kAlerteDeviation, Icone::Exclamation);
  }
  static_cast<Graphe*>(Graph1_)->valeurs = resultat_.deviations;
  Graph1_->update();
}

void frmExtrapolFocale::cmdAplatir() {
  const SerieFocale serie = Serie();
  int bas = -1, haut = -1;
  if (!Encadrer(serie, s_.FocaleAPN, bas, haut)) {
    Dialogues().Message(kTitre, QStringLiteral("Impossible de trouver les valeurs sup. et/ou inf. !"),
                        Icone::Exclamation);
    return;
  }
  SerieFocale deux;
  deux.focales = {serie.focales[bas], serie.focales[haut]};
  deux.numeros = {serie.numeros[bas], serie.numeros[haut]};
  deux.deviations = {QString(), QString()};
  Afficher(deux);
  Calculer();
}

void frmExtrapolFocale::cmdCalculerUmPourMillePix() {
  QString t = txtValeur_[1]->text();
  if (s_.SeparateurDecimal == u",") t.replace(u'.', u',');
  double f = 0;
  if (resultat_.coeff == 0 || !LireNombre(t, f) || !(f > 0)) return;
  const int16_t mille = UmPourMillePix(float(f), resultat_.coeff);
  txtValeur_[2]->setText(QString::number(mille));
  if (mille > 0) txtValeur_[3]->setText(TexteReel(Arrondir(1000.0 / mille * 100.0, 2), s_.SeparateurDecimal));
}

void frmExtrapolFocale::cmdEnvoyerAuCartouche() {
  if (txtValeur_[0]->text().isEmpty()) {
    Dialogues().Message(kTitre, QStringLiteral("Effectuez d'abord le calcul ..."), Icone::Exclamation);
    return;
  }
  // The cartouche form takes the scale of the tables' reference objective.
  if (versCartouche_) versCartouche_(resultat_.pixPour100);
  s_.ExtrapolationFoc = true;
  close();
  Dialogues().Message(kTitre, QStringLiteral("N'oubliez pas de sélectionner un objectif ..."), Icone::Information);
}

void frmExtrapolFocale::cmdAnnuler() {
  s_.ExtrapolationFoc = false;
  close();
}

}  // namespace tg
