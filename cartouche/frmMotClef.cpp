#include "cartouche/frmMotClef.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <vector>

#include "platform/Liste.h"

namespace tg {

frmMotClef::frmMotClef(SessionRecord& session, QWidget* formulaire)
    : QWidget(formulaire, Qt::Window), s_(session), formulaire_(formulaire) {
  setObjectName(QStringLiteral("frmMotClef"));
  setWindowTitle(QStringLiteral("Mots clés et classement"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::ApplicationModal);

  auto* v = new QVBoxLayout(this);
  auto* lblMotClef = new QLabel(
      QStringLiteral("Mots clés (séparés par des virgules, pas de retour de chariot !)"), this);
  lblMotClef->setObjectName(QStringLiteral("lblMotClef"));
  v->addWidget(lblMotClef);
  txtMotClef_ = new QPlainTextEdit(this);
  txtMotClef_->setObjectName(QStringLiteral("txtMotClef"));
  txtMotClef_->setFixedHeight(60);
  v->addWidget(txtMotClef_);

  auto* g = new QGridLayout;
  for (int i = 0; i < NombreNiveauxArbre; ++i) {
    auto* l = new QLabel(i == 0 ? QStringLiteral("Règne") : LibelleNiveau(i), this);
    l->setObjectName(QStringLiteral("lblClassement%1").arg(i));
    auto* c = new QComboBox(this);
    c->setObjectName(QStringLiteral("combClassement%1").arg(i));
    // Free text in every box; what is typed is never inserted by the box itself.
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    c->setMinimumWidth(240);
    combClassement_[size_t(i)] = c;
    g->addWidget(l, i, 0);
    g->addWidget(c, i, 1);
    if (i > 0) {
      auto* k = new QCheckBox(QStringLiteral("+ Liste"), this);
      k->setObjectName(QStringLiteral("chkClassement%1").arg(i - 1));
      chkClassement_[size_t(i - 1)] = k;
      g->addWidget(k, i, 2);
    }
  }
  v->addLayout(g);

  auto* h = new QHBoxLayout;
  const auto bouton = [this, h](const char* nom, const QString& texte, auto effet) {
    auto* b = new QPushButton(texte, this);
    b->setObjectName(QLatin1String(nom));
    connect(b, &QPushButton::clicked, this, effet);
    h->addWidget(b);
    return b;
  };
  bouton("cmdEffacer", QStringLiteral("Effacer"), [this] { cmdEffacer(); });
  h->addStretch();
  bouton("cmdAnnuler", QStringLiteral("Annuler"), [this] { cmdAnnuler(); });
  bouton("cmdOK", QStringLiteral("OK"), [this] { cmdOK(); })->setDefault(true);
  v->addLayout(h);

  Charger();
}

void frmMotClef::Charger() {
  RemplirArbre();
  txtMotClef_->setPlainText(s_.MotClef);
  const auto champs = ChampsClassement(s_);
  for (int i = 0; i < NombreNiveauxArbre; ++i)
    combClassement_[size_t(i)]->setEditText(*champs[size_t(i)]);
}

void frmMotClef::RemplirArbre() {
  std::array<ListeCombo, NombreNiveauxArbre> listes = {
      ListeCombo(combClassement_[0]), ListeCombo(combClassement_[1]), ListeCombo(combClassement_[2]),
      ListeCombo(combClassement_[3]), ListeCombo(combClassement_[4]), ListeCombo(combClassement_[5]),
      ListeCombo(combClassement_[6])};
  std::array<IListe*, NombreNiveauxArbre> combos{};
  for (int i = 0; i < NombreNiveauxArbre; ++i) combos[size_t(i)] = &listes[size_t(i)];
  tg::RemplirArbre(combos);
}

void frmMotClef::cmdOK() {
  SaisieMotClef saisie;
  saisie.motClef = txtMotClef_->toPlainText();
  std::vector<ListeCombo> listes;
  listes.reserve(NombreNiveauxArbre);
  std::array<const IListe*, NombreNiveauxArbre> combos{};
  for (int i = 0; i < NombreNiveauxArbre; ++i) {
    saisie.classement[size_t(i)] = combClassement_[size_t(i)]->currentText();
    listes.emplace_back(combClassement_[size_t(i)]);
    combos[size_t(i)] = &listes.back();
  }
  for (int i = 0; i < NombreNiveauxArbre - 1; ++i)
    saisie.ajouter[size_t(i)] = chkClassement_[size_t(i)]->isChecked();
  const int remplis = ValiderMotClef(s_, saisie, combos);
  MontrerIndicateur(remplis > 0);
  Quitter();
}

void frmMotClef::cmdEffacer() {
  txtMotClef_->clear();
  for (QComboBox* c : combClassement_) c->setEditText(QString());
  s_.MotClef.clear();
  for (QString* champ : ChampsClassement(s_)) champ->clear();
  MontrerIndicateur(false);
}

void frmMotClef::cmdAnnuler() { Quitter(); }

void frmMotClef::Quitter() {
  close();
  if (formulaire_ != nullptr) {
    formulaire_->show();
    formulaire_->raise();
    formulaire_->activateWindow();
  }
}

void frmMotClef::MontrerIndicateur(bool visible) {
  if (formulaire_ == nullptr) return;
  if (auto* img = formulaire_->findChild<QWidget*>(QStringLiteral("imgMotClef")))
    img->setVisible(visible);
}

}  // namespace tg
