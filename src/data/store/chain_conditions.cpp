#include "data/store/chain_conditions.h"

namespace tally::data {

namespace {

class FilterOf {
public:
    explicit FilterOf(const QString &prefix) : prefix_(prefix) {}

    void add(const char *condition)
    {
        filter_.sql += QString::fromLatin1(condition).replace(QStringLiteral("%1"), prefix_);
    }
    void add(const char *condition, std::optional<double> value)
    {
        if (!value)
            return;
        add(condition);
        filter_.params << *value;
    }
    void add_type(double btype)
    {
        add("(? IS NULL OR %1npc_btype = ?)");
        filter_.params << btype << btype;
    }
    void add_span(const ChainQuestion &question)
    {
        add(" AND COALESCE(%1chain_start_time, %1file_mtime) >= ?", question.from);
        add(" AND COALESCE(%1chain_start_time, %1file_mtime) < ?", question.to);
        add(" AND %1player_id = ?", question.player);
    }
    void add_source(ApSource source)
    {
        add(" AND COALESCE(%1is_fort_round, 0) = 0");
        if (source == ApSource::paid)
            add(" AND COALESCE(%1is_free_ap, 0) = 0");
        else if (source == ApSource::free)
            add(" AND COALESCE(%1is_free_ap, 0) = 1");
    }
    const ChainSqlFilter &filter() const { return filter_; }

private:
    const QString prefix_;
    ChainSqlFilter filter_;
};

} // namespace

ChainSqlFilter chain_filter(const QString &prefix, const ChainQuestion &question)
{
    FilterOf filter(prefix);
    filter.add_span(question);
    filter.add_source(question.ap_source);
    return filter.filter();
}

ChainSqlFilter question_conditions(const QString &prefix, const ChainQuestion &question)
{
    FilterOf filter(prefix);
    filter.add_type(question.btype);
    filter.add_span(question);
    filter.add_source(question.ap_source);
    return filter.filter();
}

ChainSqlFilter span_conditions(const ChainQuestion &question)
{
    FilterOf filter({});
    filter.add_type(question.btype);
    filter.add_span(question);
    return filter.filter();
}

} // namespace tally::data
