#pragma once
// A small list interface that a window's combo box or list box, or a test,
// can stand behind: the list fillers of the program write through it.
#include <QString>
#include <QStringList>

class QComboBox;
class QListWidget;

namespace tg {

class IListe {
 public:
  virtual ~IListe() = default;
  virtual void Vider() = 0;
  virtual void Ajouter(const QString& item) = 0;
  virtual int Nombre() const = 0;
  virtual QString Item(int index) const = 0;
  virtual int Selection() const = 0;  // -1 for none
  virtual void Selectionner(int index) = 0;
  virtual QString Texte() const = 0;
  virtual void DefinirTexte(const QString& texte) = 0;
};

// A plain list for tests and for logic that fills a list before showing it.
class ListeSimple : public IListe {
 public:
  QStringList items;
  int selection = -1;
  QString texte;
  void Vider() override { items.clear(); selection = -1; }
  void Ajouter(const QString& item) override { items << item; }
  int Nombre() const override { return int(items.size()); }
  QString Item(int index) const override { return items.value(index); }
  int Selection() const override { return selection; }
  void Selectionner(int index) override {
    selection = (index >= 0 && index < items.size()) ? index : -1;
    if (selection >= 0) texte = items[selection];
  }
  QString Texte() const override { return texte; }
  void DefinirTexte(const QString& t) override { texte = t; }
};

// Over a window's combo box and list box (window library).
class ListeCombo : public IListe {
 public:
  explicit ListeCombo(QComboBox* combo) : combo_(combo) {}
  void Vider() override;
  void Ajouter(const QString& item) override;
  int Nombre() const override;
  QString Item(int index) const override;
  int Selection() const override;
  void Selectionner(int index) override;
  QString Texte() const override;
  void DefinirTexte(const QString& texte) override;

 private:
  QComboBox* combo_;
};

class ListeWidget : public IListe {
 public:
  explicit ListeWidget(QListWidget* liste) : liste_(liste) {}
  void Vider() override;
  void Ajouter(const QString& item) override;
  int Nombre() const override;
  QString Item(int index) const override;
  int Selection() const override;
  void Selectionner(int index) override;
  QString Texte() const override;
  void DefinirTexte(const QString& texte) override;

 private:
  QListWidget* liste_;
};

}  // namespace tg
