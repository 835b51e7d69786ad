#include "ui/catalog/MediaList.h"
#include "ui/manage/LibraryModel.h"
#include "unit/ui/ModelTest.h"
#include <random>

namespace vellum::ui {
namespace {

using namespace test;

template <class Row, class Model>
void followsAnything(Model& model, QString Row::*key) {
  QStringList seen;
  const int role = model.roleNames().key("title");
  const auto shown = [&, role](int row) { return model.index(row).data(role).toString(); };
  const auto insert = [&](auto&&, int from, int to) {
    for (int i = from; i <= to; ++i) seen.insert(i, shown(i));
  };
  const auto follow = [&](auto signal, auto does) { QObject::connect(&model, signal, does); };
  follow(&Model::rowsInserted, insert);
  follow(&Model::rowsRemoved, [&](auto&&, int from, int to) { seen.remove(from, to - from + 1); });
  follow(&Model::rowsMoved, [&](auto&&, int from, int, auto&&, int to) { seen.move(from, to); });
  follow(&Model::dataChanged, [&](auto& at) { seen[at.row()] = shown(at.row()); });
  follow(&Model::modelReset, [&] {
    seen.clear();
    insert(0, 0, model.rowCount() - 1);
  });
  std::mt19937 random(7);
  for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "seed 7, round " << round);
    QStringList titles;
    std::vector<Row> rows(random() % 12);
    for (Row& row : rows) {
      row.*key = QString::number(random() % 15);
      row.title = row.*key + QString(qsizetype(random() % 2), u'+');
      titles += row.title;
    }
    model.setRows(rows);
    EXPECT_EQ(said(seen.join(u' ')), said(titles.join(u' ')));
    EXPECT_EQ(model.rows(), rows);
  }
}

TEST(RowsTest, AViewFollowsAnyChange) {
  KeyedRows<LibraryRowItem> keyed;
  followsAnything(keyed, &LibraryRowItem::id);
  MediaList media([](const QString&) {});
  int counted = 0;
  QObject::connect(&media, &MediaList::countChanged, [&] { counted = media.count(); });
  followsAnything(media, &MediaRow::key);
  EXPECT_EQ(counted, media.count());
}

} // namespace
} // namespace vellum::ui
