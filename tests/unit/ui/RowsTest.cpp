// A view that follows a model's signals shows what is there, whatever has changed.
#include "ui/catalog/MediaList.h"
#include "ui/manage/LibraryModel.h"
#include "unit/ui/ModelTest.h"
#include <random>

namespace vellum::ui {
namespace {

using namespace test;

struct Follower {
  explicit Follower(QAbstractItemModel& followed) : model(followed) {
    using Model = QAbstractItemModel;
    const auto insert = [this](auto&&, int from, int to) {
      for (int i = from; i <= to; ++i) seen.insert(i, title(i));
      ++changes;
    };
    QObject::connect(&model, &Model::modelReset, [this, insert] {
      seen.clear();
      insert(QModelIndex(), 0, model.rowCount() - 1);
    });
    QObject::connect(&model, &Model::rowsInserted, insert);
    QObject::connect(&model, &Model::rowsRemoved, [this](auto&&, int from, int to) {
      seen.remove(from, to - from + 1);
      ++changes;
    });
    QObject::connect(&model, &Model::rowsMoved,
                     [this](auto&&, int from, int, auto&&, int to) { seen.move(from, to); });
    QObject::connect(&model, &Model::dataChanged,
                     [this](const QModelIndex& at) { seen[at.row()] = title(at.row()); });
  }
  QString title(int row) const {
    return model.index(row, 0).data(model.roleNames().key("title")).toString();
  }

  QAbstractItemModel& model;
  QStringList seen;
  int changes = 0; // rows that came or went
};

template <class Row, class Model>
void followsAnything(Model& model, QString Row::*key) {
  Follower view(model);
  const auto set = [&](const QStringList& keys, auto title) {
    std::vector<Row> rows(std::size_t(keys.size()));
    QStringList titles;
    for (Row& row : rows) {
      row.*key = keys[titles.size()];
      titles += row.title = title(row.*key);
    }
    model.setRows(rows);
    ASSERT_EQ(model.rows(), rows);
    ASSERT_EQ(view.seen, titles) << said(view.seen.join(u'|')) << " for "
                                 << said(titles.join(u'|'));
  };
  std::mt19937 random(7);
  for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "seed 7, round " << round);
    QStringList keys;
    for (auto left = random() % 12; left > 0; --left) keys += QString::number(random() % 15);
    set(keys, [&](const QString& of) { return of + QString::number(random() % 2); });
  }
  const auto same = [](const QString& of) { return of; };
  set({text("a"), text("b"), text("c")}, same);
  view.changes = 0;
  set({text("c"), text("a"), text("b")}, same);
  EXPECT_EQ(view.changes, 0) << "rows that stay keep their delegates";
}

TEST(RowsTest, AViewFollowsAnyChange) {
  KeyedRows<LibraryRowItem> keyed;
  followsAnything(keyed, &LibraryRowItem::id);
  MediaList media([](const QString&) {});
  int counted = 0;
  QObject::connect(&media, &MediaList::countChanged, [&] { counted = media.count(); });
  followsAnything(media, &MediaRow::key);
  EXPECT_EQ(counted, 3);
}

} // namespace
} // namespace vellum::ui
