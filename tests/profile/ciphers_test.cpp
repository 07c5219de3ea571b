#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "machines/simulated/SimulatedMachine.h"
#include "profile/Encryption.h"
#include "profile/LightCiphers.h"
#include "profile/file_digest.h"

namespace ondura {
namespace {

using ::testing::IsEmpty;

class CiphersTest : public ::testing::Test {
 protected:
  std::string Page(std::string_view bytes) { return house_.machine().code_page.ToUtf8(bytes); }

  SimulatedMachine house_;
  LightCiphers ciphers_{house_.machine().code_page, house_.machine().pump};
};

TEST_F(CiphersTest, EveryCodePageByteIsShiftedAsOneCharacter) {
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const std::string up = code < 254 ? std::string(1, static_cast<char>(code + 2)) : "";
    const std::string down = code < 2 ? "" : std::string(1, static_cast<char>(code - 2));
    const std::string pair = byte + static_cast<char>(code < 255 ? code + 1 : 255);
    EXPECT_EQ(ciphers_.ShiftEncode(Page(byte)), Page(up)) << code;
    EXPECT_EQ(ciphers_.ShiftEncodePlain(Page(byte)), Page(up)) << code;
    EXPECT_EQ(ciphers_.ShiftDecode(Page(byte)), Page(down)) << code;
    EXPECT_EQ(ciphers_.PairEncode(Page(byte)), Page(pair)) << code;
    EXPECT_EQ(ciphers_.PairDecode(Page(pair)), Page(down)) << code;
  }
}

TEST_F(CiphersTest, FailuresInsideATextFollowTheirRules) {
  EXPECT_EQ(ciphers_.ShiftEncode("aþÿbÿ"), "cccdd");  // the previous result is kept
  EXPECT_EQ(ciphers_.ShiftEncode("þab"), "cd");
  EXPECT_EQ(ciphers_.ShiftDecode("cd\x01g"), "");
  EXPECT_EQ(ciphers_.PairDecode("CDde\x01\x02"), "");
  EXPECT_EQ(ciphers_.PairDecode("CDd"), "Ab");
  EXPECT_EQ(ciphers_.PairEncode(ciphers_.ShiftEncode("")), "");
  EXPECT_EQ(ciphers_.PairDecode(ciphers_.ShiftDecode("")), "");
}

TEST_F(CiphersTest, OnlyShiftDecodeLetsOthersInBehindEachCharacter) {
  int pumps = 0;
  house_.OnPump([&] { ++pumps; });
  EXPECT_EQ(ciphers_.PairDecode(ciphers_.PairEncode(ciphers_.ShiftEncode("abc"))), "abc");
  EXPECT_EQ(pumps, 0);
  EXPECT_EQ(ciphers_.ShiftDecode("cde"), "abc");
  EXPECT_EQ(pumps, 3);
}

TEST_F(CiphersTest, TheStreamCipherUndoesItselfUnderTheSamePassPhrase) {
  Encryption encryption{house_.machine().crypto, house_.machine().code_page};
  EXPECT_EQ(encryption.EncryptDecrypt("text", "pass", true), "Error");
  encryption.hCryptProv = house_.machine().crypto.Acquire(kEncryptionProvider);
  for (const std::string_view pass : {"pass", ""}) {
    const std::string hidden = encryption.EncryptDecrypt("täxt", pass, true);
    EXPECT_EQ(house_.machine().code_page.FromUtf8(hidden).size(), 4U);
    EXPECT_EQ(encryption.EncryptDecrypt(hidden, pass, false), "täxt");
    EXPECT_NE(encryption.EncryptDecrypt(hidden, "other", false), "täxt");
  }
  const std::string known = encryption.EncryptDecrypt("text", "pass", true);
  EXPECT_EQ(house_.machine().code_page.FromUtf8(known), "\x0A\x32\x0D\x5A") << "under the salt";
  house_.Fail("Crypto.StreamCipher");
  EXPECT_EQ(encryption.EncryptDecrypt("text", "pass", true), "Error");
  EXPECT_THAT(house_.UnfiredFaults(), IsEmpty());
}

TEST_F(CiphersTest, TheDigestIsEmptyForAnEmptyFileAndAtEveryFailure) {
  const auto digest = [&] { return FileMd5Hex(house_.machine(), "C:\\x.txt"); };
  EXPECT_EQ(digest(), "");
  house_.PutFile("C:\\x.txt", "");
  EXPECT_EQ(digest(), "");
  house_.PutFile("C:\\x.txt", "a");
  EXPECT_EQ(digest(), "0cc175b9c0f1b6a831c399e269772661");
  for (const std::string_view fault : {"Files.Size", "Files.Read", "Crypto.Acquire", "Crypto.Md5"}) {
    house_.Fail(fault);
    EXPECT_EQ(digest(), "") << fault;
  }
  EXPECT_THAT(house_.UnfiredFaults(), IsEmpty());
}

}  // namespace
}  // namespace ondura
