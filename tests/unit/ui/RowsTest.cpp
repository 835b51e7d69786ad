#include "ui/catalog/MediaList.h"
#include "ui/manage/LibraryModel.h"
#include "unit/ui/ModelTest.h"
#include <random>

namespace vellum::ui {
namespace {

using namespace test;

// A view that follows the model's signals shows its rows, which are told apart by what stands
// before a "+" in their titles.
template <class Row, class Model>
void followsAnything(Model& model, QString Row::*key) {
  QStringList seen;
  int changes = 0; // rows that came or went
  const int role = model.roleNames().key("title");
  const auto shown = [&, role](int row) { return model.index(row).data(role).toString(); };
  const auto insert = [&](auto&&, int from, int to) {
    for (int i = from; i <= to; ++i) seen.insert(i, shown(i));
    ++changes;
  };
  const auto remove = [&](auto&&, int from, int to) {
    seen.remove(from, to - from + 1);
    ++changes;
  };
  QObject view;
  const auto follow = [&](auto signal, auto does) {
    QObject::connect(&model, signal, &view, does);
  };
  follow(&Model::rowsInserted, insert);
  follow(&Model::rowsRemoved, remove);
  follow(&Model::rowsMoved, [&](auto&&, int from, int, auto&&, int to) { seen.move(from, to); });
  follow(&Model::dataChanged, [&](auto& at) { seen[at.row()] = shown(at.row()); });
  follow(&Model::modelReset, [&] {
    seen.clear();
    insert(0, 0, model.rowCount() - 1);
  });
  const auto follows = [&](const QStringList& titles) {
    std::vector<Row> rows;
    for (const QString& one : titles) {
      rows.emplace_back().title = one;
      rows.back().*key = one.section(u'+', 0, 0);
    }
    model.setRows(rows);
    EXPECT_EQ(said(seen.join(u' ')), said(titles.join(u' ')));
    EXPECT_EQ(model.rows(), rows);
  };

  std::mt19937 random(7);
  for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "seed 7, round " << round);
    QStringList titles(qsizetype(random() % 12));
    for (QString& title : titles)
      title = QString::number(random() % 15) + QString(qsizetype(random() % 2), u'+');
    follows(titles);
  }
  follows({text("a"), text("b"), text("c")});
  changes = 0;
  follows({text("c"), text("a+"), text("b")});
  EXPECT_EQ(changes, 0) << "rows that stay keep their delegates";
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
