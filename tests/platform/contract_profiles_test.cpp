#include <gmock/gmock.h>

#include "contract.h"

namespace ondura {

namespace {

using testing::Optional;

TEST_P(PlatformContract, ProfileValuesAreReadByThePlatformsRules) {
  for (const auto& [story, line, want] :
       {std::tuple{"plain", "Key=value", "value"},
        {"letter case does not count", "kEY=value", "value"},
        {"blanks around the sign are dropped", " Key \t=  value ", "value"},
        {"every blank of a text file is one", "Key\f=\v value\x1A", "value"},
        {"a hard blank is none", "Key=\xA0value\xA0", "\xC2\xA0value\xC2\xA0"},
        {"inner blanks stay", "Key=a  b", "a  b"},
        {"one pair of double quotes goes", "Key=\" value \"", " value "},
        {"one pair of single quotes goes", "Key='it'", "it"},
        {"quotes that do not match stay", "Key=\"it'", "\"it'"},
        {"a lone quote stays", "Key=\"", "\""},
        {"a second sign is part of the value", "Key=a=b", "a=b"},
        {"the first of two counts", "Key=one\r\nKEY=two", "one"},
        {"a remark is no key", ";Key=remark\r\nKey=value", "value"},
        {"a line without a sign is no key", "Key\r\nKey=value", "value"},
        {"nothing behind the sign", "Key=", ""}}) {
    if (tested_->Excuses(story)) continue;
    PutFile(ini_,
            std::string{"[Other]\r\nKey=other\r\n[ Section ]\r\n"} + line + "\r\n[Section]\r\nKey=second");
    EXPECT_EQ(machine_.profiles.ReadString(Key("SECTION", "Key")), want) << story;
  }
}

TEST_P(PlatformContract, ProfileNumbersAreReadFromTheStartOfTheValue) {
  const std::pair<std::string, int> cases[] = {
      {"402", 402}, {"-414", -414}, {" 7 apples", 7},   {"apples", 0}, {"", -10},      {"+3", 3},
      {"1.9", 1},   {"-", 0},       {"4294967295", -1}, {"0x10", 16},  {"-0xfG", -15}, {"0o17", 15},
      {"0b101", 5}, {"0X10", 0},    {"010", 10},        {"\"7\"", 7},  {"\"\"", -10}};
  for (const auto& [value, want] : cases) {
    PutFile(ini_, "[S]\nKey=" + value);
    EXPECT_EQ(machine_.profiles.ReadInt(Key("S", "Key"), -10), want) << value;
  }
  EXPECT_EQ(machine_.profiles.ReadInt(Key("S", "None"), -10), -10);
  EXPECT_EQ(machine_.profiles.ReadInt({At("none.ini"), "S", "Key"}, -1), -1);
}

TEST_P(PlatformContract, ProfileValuesAreCutAtTheBuffer) {
  const std::string value(3000, 'x');
  ASSERT_TRUE(machine_.profiles.WriteString(Key("S", "Key"), value));
  EXPECT_EQ(machine_.profiles.ReadString(Key("S", "Key")), value.substr(0, 255));
  EXPECT_EQ(machine_.profiles.ReadLongString(Key("S", "Key")), value.substr(0, 2047));
}

TEST_P(PlatformContract, WhatIsTooLongForAProfileIsRefusedAndChangesNothing) {
  const std::string longest(32766, 'x');
  // Of an odd size: one letter again and again is taken for UTF-16 otherwise.
  EXPECT_TRUE(machine_.profiles.WriteString(Key("S", "Key"), longest));
  for (const auto& [section, key, value] : {std::tuple{std::string{"S"}, std::string{"Key"}, longest + "x"},
                                            {"S", longest + "x", "v"},
                                            {longest + "x", "Key", "v"}}) {
    EXPECT_FALSE(machine_.profiles.WriteString(Key(section, key), value));
    EXPECT_EQ(machine_.profiles.ReadLongString(Key("S", "Key")), longest.substr(0, 2047));
  }
  const std::string far = At(std::string(3000, 'x'));
  EXPECT_FALSE(machine_.profiles.WriteString({far, "S", "Key"}, "v"));
  EXPECT_EQ(machine_.profiles.ReadString({far, "S", "Key"}), "");
  EXPECT_EQ(machine_.profiles.ReadInt({far, "S", "Key"}, -1), -1);
}

TEST_P(PlatformContract, AProfileWriteChangesOneLineAndKeepsTheRest) {
  for (const auto& [story, before, key, after] :
       {std::tuple{"a value is replaced in its place", "[S]\r\nA=1\r\nKey=old\r\nB=2\r\n", "Key",
                   "[S]\r\nA=1\r\nKey=new\r\nB=2\r\n"},
        {"a new key goes behind the last of its section", "[S]\r\nA=1\r\n\r\n[T]\r\nKey=t\r\n", "Key",
         "[S]\r\nA=1\r\nKey=new\r\n\r\n[T]\r\nKey=t\r\n"},
        {"a new section goes to the end", "; remark\r\n[T]\r\nKey=t\r\n", "Key",
         "; remark\r\n[T]\r\nKey=t\r\n[S]\r\nKey=new\r\n"},
        {"an open last line is closed first", "[S]\r\nA=1", "Key", "[S]\r\nA=1\r\nKey=new\r\n"},
        {"a key keeps the spelling it has", "[s]\r\nKEY = old\r\n", "Key", "[s]\r\nKEY=new\r\n"},
        {"a blank behind a key makes no other key", "[S]\r\nKey=old\r\n", "Key ", "[S]\r\nKey=new\r\n"},
        {"unknown lines stay", "junk\r\n[S]\r\nmore junk\r\n;x\r\nKey=old\r\n", "Key",
         "junk\r\n[S]\r\nmore junk\r\n;x\r\nKey=new\r\n"},
        {"an empty file starts with its section", "", "Key", "[S]\r\nKey=new\r\n"}}) {
    if (tested_->Excuses(story)) continue;
    PutFile(ini_, before);
    EXPECT_TRUE(machine_.profiles.WriteString(Key("S", key), "new")) << story;
    EXPECT_THAT(machine_.files.Read(ini_), Optional(std::string{after})) << story;
  }
}

TEST_P(PlatformContract, AValueGoesToDiskAsItIsGiven) {
  for (const auto& [value, read] : {std::pair{"", ""},
                                    {"\"a b\"", "a b"},
                                    {"a=b;[c]", "a=b;[c]"},
                                    {"\"'it'\"", "'it'"},
                                    {"\"\"it\"\"", "\"it\""},
                                    {"{qw\"hqwpf\"og#", "{qw\"hqwpf\"og#"}}) {
    PutFile(ini_, "[S]\r\nKey=old\r\n");
    EXPECT_TRUE(machine_.profiles.WriteString(Key("S", "Key"), value));
    EXPECT_THAT(machine_.files.Read(ini_), Optional(std::string{"[S]\r\nKey="} + value + "\r\n"));
    EXPECT_EQ(machine_.profiles.ReadString(Key("S", "Key")), read);
  }
}

TEST_P(PlatformContract, AProfileTakesTheCodePageAndNotUtf8) {
  ASSERT_TRUE(machine_.profiles.WriteString(Key("S", "Ärger"), "Größe €"));
  EXPECT_THAT(machine_.files.Read(ini_), Optional(std::string{"[S]\r\n\xC4rger=Gr\xF6\xDF"
                                                              "e \x80\r\n"}));
  EXPECT_EQ(machine_.profiles.ReadString(Key("S", "Ärger")), "Größe €");
  if (tested_->Excuses("keys beyond ASCII match in both cases")) return;
  EXPECT_EQ(machine_.profiles.ReadString(Key("S", "äRGER")), "Größe €");
}

TEST_P(PlatformContract, WritesOfOthersAreReadAtOnce) {
  for (const char* value : {"0", "5", "0", "1"}) {
    ASSERT_TRUE(other_.profiles.WriteString(Key("BackupStatus", "Status"), value));
    EXPECT_EQ(machine_.profiles.ReadString(Key("BackupStatus", "Status")), value);
  }
  PutFile(ini_, "[BackupStatus]\r\nStatus=7\r\n");
  EXPECT_EQ(other_.profiles.ReadString(Key("BackupStatus", "Status")), "7") << "same size, same moment";
}

TEST_P(PlatformContract, AProfileMakesItsFileButNoFolder) {
  EXPECT_TRUE(machine_.profiles.WriteString(Key("S", "Key"), ""));
  EXPECT_THAT(machine_.files.Read(ini_), Optional(std::string{"[S]\r\nKey=\r\n"}));
  EXPECT_FALSE(machine_.profiles.WriteString({At(R"(none\User.ini)"), "S", "Key"}, "x"));
  EXPECT_EQ(machine_.profiles.ReadString({At(R"(none\User.ini)"), "S", "Key"}), "");
}

TEST_P(PlatformContract, AWatchedFileIsReportedOncePerChange) {
  const auto watch = machine_.watches.Watch(At("watched.ini"));
  EXPECT_TRUE(watch->MayHaveChanged()) << "the first look always counts";
  PutFile(At("watched.ini"), "1");
  EXPECT_TRUE(watch->MayHaveChanged()) << "made";
  other_.files.Write(At("WATCHED.ini"), "2", IfPresent::kReplace);
  EXPECT_TRUE(watch->MayHaveChanged()) << "rewritten with the same size by another process";
  other_.profiles.WriteString({At("watched.ini"), "S", "K"}, "v");
  EXPECT_TRUE(watch->MayHaveChanged()) << "replaced";
  machine_.files.Remove(At("watched.ini"), Removal::kForce);
  EXPECT_TRUE(watch->MayHaveChanged()) << "removed";
  EXPECT_TRUE(machine_.files.Write(At("watched.ini"), "3", IfPresent::kFail)) << "the watch keeps no name";
  EXPECT_TRUE(watch->MayHaveChanged()) << "made again";
  machine_.clock.Sleep(std::chrono::milliseconds{30});
  watch->MayHaveChanged();
  EXPECT_FALSE(watch->MayHaveChanged());
  EXPECT_TRUE(machine_.watches.Watch(R"(Q:\none\none)")->MayHaveChanged());
}

}  // namespace

}  // namespace ondura
