// The list interface over a window's combo box and list box.
#include "platform/Liste.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

namespace tg {

void ListeCombo::Vider() { combo_->clear(); }
void ListeCombo::Ajouter(const QString& item) { combo_->addItem(item); }
int ListeCombo::Nombre() const { return combo_->count(); }
QString ListeCombo::Item(int index) const { return combo_->itemText(index); }
int ListeCombo::Selection() const { return combo_->currentIndex(); }
void ListeCombo::Selectionner(int index) { combo_->setCurrentIndex(index); }
QString ListeCombo::Texte() const { return combo_->currentText(); }
void ListeCombo::DefinirTexte(const QString& texte) {
  if (combo_->isEditable())
    combo_->setEditText(texte);
  else
    combo_->setCurrentIndex(combo_->findText(texte));
}

void ListeWidget::Vider() { liste_->clear(); }
void ListeWidget::Ajouter(const QString& item) { liste_->addItem(item); }
int ListeWidget::Nombre() const { return liste_->count(); }
QString ListeWidget::Item(int index) const {
  auto* it = liste_->item(index);
  return it ? it->text() : QString();
}
int ListeWidget::Selection() const { return liste_->currentRow(); }
void ListeWidget::Selectionner(int index) { liste_->setCurrentRow(index); }
QString ListeWidget::Texte() const {
  auto* it = liste_->currentItem();
  return it ? it->text() : QString();
}
void ListeWidget::DefinirTexte(const QString& texte) {
  const auto trouves = liste_->findItems(texte, Qt::MatchExactly);
  liste_->setCurrentItem(trouves.isEmpty() ? nullptr : trouves.first());
}

}  // namespace tg
