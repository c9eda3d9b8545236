#include "postgres/ArrayCasts.h"

#include <gtest/gtest.h>

namespace {

using postgres::keepArrayCasts;

TEST(PostgresArrayCasts, SayTheTypeOfTheArray) {
    EXPECT_EQ(
        keepArrayCasts("x = ANY ((ARRAY['a'::character varying, 'b'::character varying])::text[])"),
        "x = ANY ((ARRAY['a'::character varying, 'b'::character varying]::character varying[])::text[])");
    EXPECT_EQ(keepArrayCasts("(ARRAY[1, 20])::numeric[]"), "(ARRAY[1, 20]::integer[])::numeric[]");
    EXPECT_EQ(keepArrayCasts("(ARRAY[('a'::bpchar)::character(3)])::text[]"),
              "(ARRAY[('a'::bpchar)::character(3)]::character(3)[])::text[]");
}

TEST(PostgresArrayCasts, GoIntoEachOther) {
    EXPECT_EQ(keepArrayCasts("(ARRAY[f((ARRAY['a'::s.b])::text[])::name, ''::name])::text[]"),
              "(ARRAY[f((ARRAY['a'::s.b]::s.b[])::text[])::name, ''::name]::name[])::text[]");
}

TEST(PostgresArrayCasts, StayWhereTheElementsDoNotSayTheirType) {
    for (char const* const sql :
         {"(ARRAY[a, b])::text[]", "(ARRAY['a'::name, b])::text[]", "(ARRAY['a'::name, 'b'::text])::text[]",
          "(ARRAY[12345678901])::numeric[]", "(ARRAY[(a || 'b'::name)])::text[]", "(ARRAY[])::text[]",
          "ARRAY['a'::name]", "(ARRAY['a'::name])", "(ARRAY['a'::name", "(ARRAY[", ""}) {
        EXPECT_EQ(keepArrayCasts(sql), sql);
    }
}

/// Brackets and commas in a literal close nothing.
TEST(PostgresArrayCasts, LeaveLiteralsNamesAndCommentsAlone) {
    EXPECT_EQ(keepArrayCasts("(ARRAY['a],''('::name, E'\\'['::name])::text[]"),
              "(ARRAY['a],''('::name, E'\\'['::name]::name[])::text[]");
    for (char const* const sql : {"'(ARRAY[''a''::name])::text[]'", "\"(ARRAY[1])::x[]\"",
                                  "$$(ARRAY[1])::x[]$$", "$q$ $$ (ARRAY[1])::x[] $q$", "-- (ARRAY[1])::x[]",
                                  "/* (ARRAY[1])::x[] */", "E'\\'(ARRAY[1])::x[]'"}) {
        EXPECT_EQ(keepArrayCasts(sql), sql);
    }
    EXPECT_EQ(keepArrayCasts("a$b$ (ARRAY[1])::x[]"), "a$b$ (ARRAY[1]::integer[])::x[]");
    EXPECT_EQ(keepArrayCasts("$1 (ARRAY[1])::x[] $2"), "$1 (ARRAY[1]::integer[])::x[] $2");
}

} // namespace
