#pragma once

#include <QAbstractItemModel>

namespace NVB::GUI {

// A table or tree that keeps its rows in whatever form suits it and reports
// the progress of its loads through updated(), complite() and error().
class BaseModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit BaseModel(QObject* parent = nullptr);
    ~BaseModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override = 0;
    QModelIndex parent(const QModelIndex& index) const override = 0;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override = 0;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override = 0;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override = 0;

    virtual bool init() = 0;

signals:
    void updated();
    void complite();
    void error(QString text);
};

} // namespace NVB::GUI
