#include "session/OptionCatalog.h"

#include "settings/OptionSchema.h"
#include "text/Chars.h"

#include <array>
#include <charconv>

namespace vornhale::session {
namespace {

using K = OptionKind;

constexpr std::string_view kTabInput = "入力ﾌｧｲﾙ";
constexpr std::string_view kTabSort = "Sort/Zone";
constexpr std::string_view kTabMemo = "memo単複";
constexpr std::string_view kTabProvince = "Province";
constexpr std::string_view kTabNoQsl = "No QSL";
constexpr std::string_view kTabMng = "MNG検索";
constexpr std::string_view kTabResult = "結 果";
constexpr std::string_view kTabQth = "qth_mas";

// Frames and tool-tips shared by the members of a group.
constexpr std::string_view kFrameOption2 = " 入力時刻 ";
constexpr std::string_view kTipOption2 = "元ﾃﾞｰﾀ zLog の時刻の種別です。";
constexpr std::string_view kFrameOption05 = " UTC <--> JST の変換 ";
constexpr std::string_view kFrameOption02 = " 出力ﾌｧｲﾙ　１ の Ｓｏｒｔ 順の指定 ";
constexpr std::string_view kTipOption02 = "出力ファイルのソートキーの優先順を指定する。";
constexpr std::string_view kFrameOption6 = "  指定位置の数字は Ｚｏｎｅ と  ：  Zone 前置文字列";
constexpr std::string_view kTipOption6 =
    "Rmks1 または Rmks2 に Zone を転記する場合の前置文字列の指定です。";
constexpr std::string_view kFrameOption08 = "単数回 QSO ／ 複数回 QSO に ";
constexpr std::string_view kFrameOption3 = " 転記場所 ";
constexpr std::string_view kFrameOption4 = " 前置 挿入文字列 ";
constexpr std::string_view kFrameOption04 =
    " 該当する局には No QSL                        参照する入力ファイル ";
constexpr std::string_view kLabelHistoryMatch = "同一コールのデータは全て";
constexpr std::string_view kFrameQslMarks = " QSLマーク ";
constexpr std::string_view kFrameOption10 = " 優先順 ";
constexpr std::string_view kFrameQthMas = " ＱＴＨ_ＭＡＳ．ｔｘｔ よりの取得 ";
constexpr std::string_view kLabelQthFields = "但し、移動局なら Code , QTH , G・L は取得しない";
constexpr std::string_view kStartTop = "起動時に最上部表示する";

constexpr OptionEntry kEntries[] = {
    // Tab "入力ﾌｧｲﾙ"
    {"Option2", 0, K::GroupMember, "UTC", kFrameOption2, kTipOption2, "Option2",
     kTabInput},
    {"Option2", 1, K::GroupMember, "J ST", kFrameOption2, kTipOption2, "Option2",
     kTabInput},
    {"Option05", 0, K::GroupMember, "無変換", kFrameOption05, "", "Option05",
     kTabInput},
    {"Option05", 1, K::GroupMember, "全てJ ST", kFrameOption05, "", "Option05",
     kTabInput},
    {"Option05", 2, K::GroupMember, "全てUTC", kFrameOption05, "", "Option05",
     kTabInput},
    {"Option05", 3, K::GroupMember, "JA 局は J ST", kFrameOption05, "", "Option05",
     kTabInput},
    {"Check2", -1, K::Tick, "/ の左右の文字の桁数の少ない方 ( 例　XX9TS/P5 -> P5 )",
     "  ＣａｌｌＳｉｇｎ からの Entity 決定方法 ", "", "Check2", kTabInput},
    {"txtYYYY", -1, K::Text, "", " ｺﾝﾃｽﾄ 開催 ", "", "YYYY", kTabInput},
    {"txtRmks1", -1, K::Text, "", " Rmks1 のｺﾒﾝﾄ", "Rmks1 に転記する ｺﾒﾝﾄ を指定する", "", kTabInput},
    {"txtRmks2", -1, K::Text, "", " Rmks2 のｺﾒﾝﾄ", "Rmks2 に転記する ｺﾒﾝﾄ を指定する", "", kTabInput},

    // Tab "Sort/Zone"
    {"Check21", -1, K::Tick, "変換結果保存", "", "", "Check21", kTabSort},
    {"Option02", 0, K::GroupMember, "Call > Band > Mode > Date > Time", kFrameOption02,
     kTipOption02, "Option02", kTabSort},
    {"Option02", 1, K::GroupMember, "Call > Date > Time > Band > Mode", kFrameOption02,
     kTipOption02, "Option02", kTabSort},
    {"Option02", 2, K::GroupMember, "Mng  > Call > Band > Mode > Date > Time", kFrameOption02,
     kTipOption02, "Option02", kTabSort},
    {"Option02", 3, K::GroupMember, "Mng  > Call > Date > Time > Band > Mode", kFrameOption02,
     kTipOption02, "Option02", kTabSort},
    {"Option02", 4, K::GroupMember, "zLog の入力順のままで変更しない", kFrameOption02,
     "「memo単複」の中の「単数回 QSO ／ 複数回 QSO に 」「分けない」にレ点がある時のみ有効。",
     "Option02", kTabSort},
    {"Check12", -1, K::Tick, "取得した Zone は空白にしない", "",
     "入力ファイル名から All Asia などは Zone "
     "では無いので空白とされるので、レ点を付ければ空白にはしない",
     "Check12", kTabSort},
    {"Option6", 0, K::GroupMember, "Z", kFrameOption6, kTipOption6, "Option6",
     kTabSort},
    {"Option6", 1, K::GroupMember, "CQ = ", kFrameOption6, kTipOption6, "Option6",
     kTabSort},
    {"Option6", 2, K::GroupMember, "ITU = ", kFrameOption6, kTipOption6, "Option6",
     kTabSort},
    {"Option6", 3, K::GroupMember, "任意", kFrameOption6, "任意の文字列を指定・転記出来ます。",
     "Option6", kTabSort},
    {"txtZone_moji", -1, K::Text, "", kFrameOption6, "", "Zone_moji", kTabSort},
    {"Check6", -1, K::Tick, "する", "", "", "Check6", kTabSort},
    {"Option7", 0, K::GroupMember, "ｒｃｖｄ の 左側の２ 桁 ", "", "", "Option7",
     kTabSort},
    {"Option7", 1, K::GroupMember, "ｒｃｖｄ の 右側の２ 桁 ", "", "", "Option7",
     kTabSort},

    // Tab "memo単複"
    {"Option08", 0, K::GroupMember, "分ける", kFrameOption08,
     "単数回のデータ、複数回のデータの順に分けて出力する。", "Option08", kTabMemo},
    {"Option08", 1, K::GroupMember, "分けない", kFrameOption08,
     "特別な処理をしないでそのままとする。", "Option08", kTabMemo},
    {"Check16", -1, K::Tick, "Ｂａｎｄ　 ： １．９ は １．８　に置換する。", "", "", "Check16", kTabMemo},
    {"Check15", -1, K::Tick, "QRA 取得", "name_mas．txt", "name_mas ．txt より Name を取得する",
     "Check15", kTabMemo},
    {"Check02", -1, K::Tick, "指定 O P 名 のみの ﾃﾞｰﾀ を読み込む", "",
     "memo 欄 の中から　指定した Op が運用したデータ行のみ読み込み、変換処理します。", "Check02", kTabMemo},
    {"txtOp_name", -1, K::Text, "", "", "", "", kTabMemo},
    {"Option1", 0, K::GroupMember, "MNG_Vornhale_full ．txt", " 使用 MNG ファイル名 ",
     "QSL マネジャーの取得に使用するマスターファイルを選択します。", "Option1",
     kTabMemo},
    {"Check20", -1, K::Tick, "メモ欄 転記", "",
     "レ点を付けると メモ欄の内容　（ 例　SV8/ZZ8Q/P ）　も転記します。", "Check20",
     kTabMemo},
    {"Check1", -1, K::Tick, "空白有り", " 項目区切 ", "", "Check1", kTabMemo},
    {"Check17", -1, K::Tick, "Freq 取得", " ｍｅｍｏ 欄 ",
     "memo 欄の　（ ） で囲まれた Rig 制御での周波数の取得", "Check17", kTabMemo},
    {"Check06", -1, K::Tick, "作成する", " Dupe List ", "重複チェック・リスト", "Check06", kTabMemo},

    // Tab "Province"
    {"Check5", -1, K::Tick, "RCVD より Provinces の取得をする。", "", "", "Check5",
     kTabProvince},
    {"Check13", -1, K::Tick, "Rcvd の数字は有効", "", "REFコンテストの時のみレ点を付けて下さい。",
     "", kTabProvince},
    {"Option3", 0, K::GroupMember, "Ｒｍｋｓ１", kFrameOption3, "", "Option3",
     kTabProvince},
    {"Option3", 1, K::GroupMember, "Ｒｍｋｓ２", kFrameOption3, "", "Option3",
     kTabProvince},
    {"Option4", 0, K::GroupMember, "Province = ", kFrameOption4, "", "Option4",
     kTabProvince},
    {"Option4", 1, K::GroupMember, "Oblast = ", kFrameOption4, "", "Option4",
     kTabProvince},
    {"Option4", 2, K::GroupMember, "無し", kFrameOption4, "", "Option4",
     kTabProvince},
    {"Option4", 3, K::GroupMember, "任 意 文字列", kFrameOption4, "", "Option4",
     kTabProvince},
    {"Option4", 4, K::GroupMember, "State = ", kFrameOption4, "", "Option4",
     kTabProvince},
    {"txtProv_moji", -1, K::Text, "", kFrameOption4, "", "Prov_moji", kTabProvince},

    // Second tab group, "No QSL"
    {"Option04", 0, K::GroupMember, "この機能は無視する", kFrameOption04, "", "Option04", kTabNoQsl},
    {"Option04", 1, K::GroupMember, "Q S O   済みの局", kFrameOption04, "すでにＱＳＯ済みの局。",
     "Option04", kTabNoQsl},
    {"Option04", 2, K::GroupMember, "QSL発行済みの局", kFrameOption04,
     "すでにＱＳＬカード発行済みの局。", "Option04", kTabNoQsl},
    {"Option04", 3, K::GroupMember, "QSL受領済みの局", kFrameOption04,
     "すでにＱＳＬカード受領済みの局。", "Option04", kTabNoQsl},
    {"Option01", 0, K::GroupMember, "新 Hamlog.hdb", "",
     "Ｈａｍｌｏｇ のﾊﾞｯｸｱｯﾌﾟ・ﾌｧｲﾙ　BAK0001.txt を使用する。", "", kTabNoQsl},
    {"Check04", -1, K::Tick, "同バンド", kLabelHistoryMatch, "", "Check04",
     kTabNoQsl},
    {"Check05", -1, K::Tick, "同モード", kLabelHistoryMatch, "", "Check05",
     kTabNoQsl},
    {"Check3", -1, K::Tick, " N --> J", "", "", "Check3", kTabNoQsl},
    {"Check4", -1, K::Tick, " J --> N", "", "", "Check4", kTabNoQsl},
    {"Check09", -1, K::Tick, "指定ctyはNo QSL", "",
     "右の記入欄のエンティテーへのＱＳＬ転送先マークはＮとする。", "Check09",
     kTabNoQsl},
    {"txtNo_qsl_cty", -1, K::Text, "", "", "No QSL としたいエンティテー名を入力する。", "No_qsl_cty", kTabNoQsl},
    {"cmdNG", -1, K::Button, "cty  有効・無効の確認", "",
     "No QSL としたいエンティテー名が正しいか確認する。", "", kTabNoQsl},
    {"Check10", -1, K::Tick, "No QSL とする ", " JA の ｸﾗﾌﾞ 局は ",
     "ＪＡのクラブ局宛のＱＳＬ転送先をＮとする。", "Check10", kTabNoQsl},
    {"Check14", -1, K::Tick, "フル ・ コールで処理", "",
     "レ点を付けると　「 NO QSL 」 の処理時に 移動地を含むコールサイン で処理します。", "Check14", kTabNoQsl},
    {"Check19", -1, K::Tick, "変換の度に参照ファイルから再読み込みをする", "", "", "Check19", kTabNoQsl},
    {"txtQSL_Q", -1, K::Text, "転送先", kFrameQslMarks,
     "QSL の転送先 ﾏｰｸ を 半角 １文字で指定する　", "QSL_Q", kTabNoQsl},
    {"txtQSL_S", -1, K::Text, "発行済", kFrameQslMarks,
     "QSL の発行済み ﾏｰｸ を半角１文字で指定する　", "QSL_S", kTabNoQsl},
    {"Check7", -1, K::Tick, "起動時に最上部表示する。", "", "", "disp_top_SSTab",
     kTabNoQsl},

    // "MNG検索"
    {"Check18", -1, K::Tick, "Web よりMng 取得をする", "", "", "Check18", kTabMng},
    {"Option10", 0, K::GroupMember, "Web 検索のみ使用する", kFrameOption10, "", "Option10", kTabMng},
    {"Option10", 1, K::GroupMember, "MNGファイルを優先し、WEB検索で補完する", kFrameOption10, "",
     "Option10", kTabMng},
    {"Option10", 2, K::GroupMember, "WEB検索を優先し、MNGファイルで補完する", kFrameOption10, "",
     "Option10", kTabMng},
    {"Check22", -1, K::Tick, "N でも検索", "",
     "ＱＳＬ転送先マークが Ｎ でも ＭＮＧ の検索を行う時は レ点 を付ける", "Check22",
     kTabMng},
    {"Check23", -1, K::Tick, "N でも転記", "",
     "ＱＳＬ転送先マークが Ｎ でも 指定の Ｒｍｋｓ 欄 にＭＮＧ を転記する時は レ点 を付ける",
     "Check23", kTabMng},
    {"Check9", -1, K::Tick, "QSL MNG がいても　Ｎ", "", "", "", kTabMng},
    {"Combo1", -1, K::Text, "", "検索間隔 ( sec )", "", "GetMng_Interval", kTabMng},
    {"Check8", -1, K::Tick, kStartTop, "", "", "disp_top_SSTab", kTabMng},

    // "結 果"
    {"Check11", -1, K::Tick, "起動時に最上部表示する。", "", "", "disp_top_SSTab",
     kTabResult},

    // "qth_mas"
    {"Check29", -1, K::Tick, "使用する", kFrameQthMas, "", "Check29", kTabQth},
    {"Check25", -1, K::Tick, "Code", kLabelQthFields, "", "Check25", kTabQth},
    {"Check26", -1, K::Tick, "G ・L", kLabelQthFields, "", "Check26", kTabQth},
    {"Check27", -1, K::Tick, "Name", kLabelQthFields, "", "Check27", kTabQth},
    {"Check28", -1, K::Tick, "QTH", kLabelQthFields, "", "Check28", kTabQth},

    // The start tab of the first group: member N stands on tab N. Only three captions exist
    // for the four tabs; the last tab repeats the third.
    {"Option5", 0, K::GroupMember, kStartTop, "", "", "Option5", kTabInput},
    {"Option5", 1, K::GroupMember, "起動時 Top", "", "", "Option5", kTabSort},
    {"Option5", 2, K::GroupMember, "起動時Top", "", "", "Option5", kTabMemo},
    {"Option5", 3, K::GroupMember, "起動時Top", "", "", "Option5", kTabProvince},

    // Buttons of the zone and province prefixes and of the year.
    {"cmdNow", -1, K::Button, "Now", "", "クリックすると今年の西暦がセットされます", "", kTabInput},
    {"cmdDisp", -1, K::Button, "確認", "", "", "", kTabSort},
    {"cmdDel", -1, K::Button, "消去", "", "", "", kTabSort},
    {"cmdZone_moji_save", -1, K::Button, "保存", "", "", "", kTabSort},
    {"cmdDelProv", -1, K::Button, "消去", "", "", "", kTabProvince},

    // Menu entries with a tick.
    {"mnuMake_a2t", -1, K::MenuTick, "変換時に zLog の ＊．.all  から ＊．txt を作成する。", "", "",
     "Make_a2t", ""},
    {"mnuMake_t2a", -1, K::MenuTick, "変換時に zLog の ＊．.txt  から ＊．all を作成する。", "", "",
     "Make_t2a", ""},
};

} // namespace

std::string OptionEntry::controlName() const
{
    if (member < 0) {
        return std::string(name);
    }
    return std::string(name) + "(" + std::to_string(member) + ")";
}

std::span<const OptionEntry> OptionCatalog::all()
{
    return kEntries;
}

std::pair<std::string_view, int> OptionCatalog::splitMember(std::string_view controlName)
{
    const auto open = controlName.find('(');
    if (open == std::string_view::npos || controlName.back() != ')') {
        return {controlName, -1};
    }
    int index = -1;
    const char* first = controlName.data() + open + 1;
    const char* last = controlName.data() + controlName.size() - 1;
    const auto [ptr, ec] = std::from_chars(first, last, index);
    if (ec != std::errc{} || ptr != last || index < 0) {
        return {controlName, -1};
    }
    return {controlName.substr(0, open), index};
}

const OptionEntry* OptionCatalog::find(std::string_view name, int member)
{
    if (member < 0) {
        const auto [bare, index] = splitMember(name);
        name = bare;
        member = index;
    }
    for (const OptionEntry& e : kEntries) {
        if (e.member == member && text::equalsNoCase(e.name, name)) {
            return &e;
        }
    }
    return nullptr;
}

std::vector<const OptionEntry*> OptionCatalog::members(std::string_view name)
{
    std::vector<const OptionEntry*> out;
    for (const OptionEntry& e : kEntries) {
        if (e.kind == OptionKind::GroupMember && text::equalsNoCase(e.name, name)) {
            out.push_back(&e);
        }
    }
    return out;
}

std::string OptionCatalog::defaultOf(const OptionEntry& entry, std::string_view thisYear)
{
    const settings::SchemaKey* key = schemaKey(entry);
    return key == nullptr ? std::string() : settings::defaultValueOf(*key, thisYear);
}

const settings::SchemaKey* OptionCatalog::schemaKey(const OptionEntry& entry)
{
    return entry.stored() ? settings::findSchemaKey(entry.key)
                          : settings::findSchemaKey(entry.name, settings::SettingsFileId::None);
}

} // namespace vornhale::session
