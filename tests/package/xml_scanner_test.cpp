#include "package/xml_scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// The tokens in a short notation: +a start, *a empty element, -a end, 'text', ? other.
std::string Tokens(std::string_view document, XmlScanner::Mode mode = XmlScanner::Mode::kStrict) {
  XmlScanner xml(document, mode);
  std::string tokens;
  while (xml.Next() != Token::kDone) {
    switch (xml.token()) {
      case Token::kStart:
        tokens += (xml.is_empty() ? "*" : "+") + std::string(xml.name());
        break;
      case Token::kEnd:
        tokens += "-" + std::string(xml.name());
        break;
      case Token::kText:
        tokens += "'" + std::string(xml.text()) + "'";
        break;
      default:
        tokens += "?";
    }
  }
  return tokens;
}

TEST(XmlScannerTest, ReportsTokensAsTheyStand) {
  EXPECT_EQ(Tokens("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><a><!-- <b> --><x:b/>t&amp;"
                   "<![CDATA[<c>]]></a>"),
            "?+a?*x:b't&amp;''<c>'-a");
  XmlScanner xml("<row r='1' x:y = \"a>'b\" >v</row>");
  ASSERT_EQ(xml.Next(), Token::kStart);
  EXPECT_EQ(xml.Attribute("r"), "1");
  EXPECT_EQ(xml.Attribute("x:y"), "a>'b");
  EXPECT_EQ(xml.Attribute("y"), std::nullopt);
  EXPECT_EQ(xml.depth(), 0u);
  ASSERT_EQ(xml.Next(), Token::kText);
  EXPECT_EQ(xml.depth(), 1u);
  EXPECT_EQ(xml.document().substr(xml.begin(), xml.end() - xml.begin()), "v");
}

TEST(XmlScannerTest, SkipsAndJoinsElements) {
  XmlScanner xml("<a><b><c/>x<b>y &lt;</b></b><d/></a>");
  xml.Next();
  ASSERT_EQ(xml.Next(), Token::kStart);
  EXPECT_EQ(XmlScanner(xml).SkipElement(), "<c/>x<b>y &lt;</b>");
  EXPECT_EQ(xml.ElementText(), "xy <");
  ASSERT_EQ(xml.Next(), Token::kStart);
  EXPECT_EQ(xml.name(), "d");
  EXPECT_EQ(xml.SkipElement(), "");
}

TEST(XmlScannerTest, RefusesWhatIsNotWellFormed) {
  for (const char* document :
       {"", "   ", "text", "<a>", "<a", "<a b='1", "<a></b>", "<a><b></a></b>", "</a>", "<a/><b/>",
        "<a/>text", "<a><b</a>", "<a><!-- </a>", "<a><![CDATA[ </a>", "<a>< b/></a>",
        "<!DOCTYPE a [<!ENTITY x 'y'>]><a>&x;</a>", "<!DOCTYPE a><a/>", "<1/>", "<a$/>", "<a/ >",
        "<a></a b>", "<?xml version='1.0' encoding='windows-1252'?><a/>", "<a><br></a>",
        // Attributes
        "<a b/>", "<a b=1/>", "<a b='1'c='2'/>", "<a ='1'/>", "<a 'b'/>", "<a b\"c = \"d>",
        "<a b='<'/>", "<a b='1' c='' b='2'/>",
        "<a b='' c='' d='' e='' f='' g='' h='' i='' j='' k='' d=''/>",
        // References
        "<a>&</a>", "<a>& amp;</a>", "<a>&amp</a>", "<a>&nbsp;</a>", "<a>&#;</a>", "<a>&#x;</a>",
        "<a>&#xG;</a>", "<a>&#A;</a>", "<a>&#1;</a>", "<a>&#xD800;</a>", "<a>&#xFFFF;</a>",
        "<a>&#x110000;</a>", "<a>&#4294967361;</a>", "<a b='&#0;'/>", "<a b='&b;'/>", "&#32;<a/>",
        // What ends something else, and instructions
        "<a>]]></a>", "<a><!-- -- --></a>", "<a><!-- ---></a>", "<a/><![CDATA[]]>",
        " <?xml version='1.0'?><a/>", "<a><?xml version='1.0'?></a>", "<?XML version='1.0'?><a/>",
        "<?xml?><a/>", "<?xml encoding='UTF-8'?><a/>", "<?xml encoding='UTF-8' version='1.0'?><a/>",
        "<?xml version='1.0' other=''?><a/>", "<?xml version='1.0'/>?><a/>", "<? ?><a/>",
        "<?1?><a/>"}) {
    EXPECT_THROW(Tokens(document), XmlError) << document;
  }
}

TEST(XmlScannerTest, TakesWhatLooksOddAndIsWellFormed) {
  for (const char* document :
       {"<?xml version=\"1.1\"  standalone = 'yes' ?><a/>", "<?xml-stylesheet x?><a/>",
        "<!----><a/><!-- - -> < & -->\r\n", "<a\n:b-.1='>]]>'\tc = \"'\"/>", "<_a.-b></_a.-b >",
        "<a>&#0000000065;&#x10FFFF;&#x9;&quot;&apos;</a>", "<a>]] > ] ]&gt;</a>",
        "<a><![CDATA[<&]]]]>]<![CDATA[]]></a>", "<q:a q:b='' b=''/>",
        "<\u00E4 \u20AC='\u20AC'/>"}) {
    EXPECT_NO_THROW(Tokens(document)) << document;
  }
}

TEST(XmlScannerTest, LenientModeTakesUnclosedElements) {
  EXPECT_EQ(Tokens("<div>a<br>b<br>c</div>", XmlScanner::Mode::kLenient),
            "+div'a'+br'b'+br'c'-div");
  EXPECT_THROW(Tokens("<div></p></div>", XmlScanner::Mode::kLenient), XmlError);
  EXPECT_EQ(Tokens("<td nowrap x='a<b'>&nbsp;</td>", XmlScanner::Mode::kLenient), "+td'&nbsp;'-td");
  XmlScanner xml("<a><p>x<br></a>", XmlScanner::Mode::kLenient);
  xml.Next();
  xml.Next();
  EXPECT_EQ(xml.SkipElement(), "x<br>") << "ends where its parent ends";
}

TEST(XmlTextTest, DecodesEntitiesAndEscapes) {
  struct Case {
    const char* raw;
    const char* xml;
    const char* spreadsheet;
  };
  for (const Case& c : {
           Case{"a&lt;&#65;&#x20AC;&amp;amp;", "a<A\u20AC&amp;", "a<A\u20AC&amp;"},
           Case{"&unknown; & &#xD800; &#0;", "&unknown; & &#xD800; &#0;",
                "&unknown; & &#xD800; &#0;"},
           Case{"&#0000000000000065;&amp", "A&amp", "A&amp"},
           Case{"a\r\nb\rc", "a\nb\nc", "a\nb\nc"},
           Case{"_x000D_\n_x0041_", "_x000D_\n_x0041_", "\r\nA"},
           Case{"_x005F_x0041_", "_x005F_x0041_", "_x0041_"},
           Case{"_xD83D__xDE00_", "_xD83D__xDE00_", "\U0001F600"},
           Case{"_xD83D_ _x12_ _X0041_ _x", "_xD83D_ _x12_ _X0041_ _x", "_xD83D_ _x12_ _X0041_ _x"},
       }) {
    EXPECT_EQ(DecodeXml(c.raw), c.xml) << c.raw;
    EXPECT_EQ(DecodeSpreadsheetText(c.raw), c.spreadsheet) << c.raw;
  }
}

TEST(XmlTextTest, EncodedTextsReadBackTheSame) {
  EXPECT_EQ(EncodeXmlAttribute("a\"<\n>&"), "a&quot;&lt;&#10;&gt;&amp;");
  EXPECT_EQ(EncodeXmlText("a\x01\uFFFF\r"), "a_x0001__xFFFF_&#13;");
  EXPECT_EQ(EncodeSpreadsheetText("a\r\x01_x0041_<"), "a_x000D__x0001__x005F_x0041_&lt;");
  for (std::string text :
       {std::string("\0\x1F\t\n\r", 5), std::string("_x0041_x0042_"), std::string("__x000D_"),
        std::string("\U0001F600 \uFFFE\uFFFF"), std::string("&amp;_x005F_")}) {
    EXPECT_EQ(DecodeSpreadsheetText(EncodeSpreadsheetText(text)), text);
  }
}

TEST(TextPatchTest, AppliesChangesInPlace) {
  std::string text = "<a b='1'/>";
  TextPatch patch(text);
  EXPECT_TRUE(patch.empty());
  patch.Insert(10, "!");
  patch.Replace(std::string_view(text).substr(6, 1), "22");
  patch.Insert(6, "+");
  EXPECT_EQ(patch.Apply(), "<a b='+22'/>!");
  patch.Replace(5, 7, "");
  EXPECT_THROW(patch.Apply(), std::logic_error) << "overlaps";
}

}  // namespace
}  // namespace vantora::embedded
