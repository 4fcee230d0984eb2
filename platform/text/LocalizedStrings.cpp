// SPDX-License-Identifier: Apache-2.0
#include "platform/text/LocalizedStrings.h"

namespace zel::inline v1 {
namespace {

/// English is a language like any other, so that a user who prefers it to a second one gets it.
/// A language under two codes has two rows.
constexpr LocalizedStrings allStrings[] = {
    {"en", "Light", "Dark", "Follow system appearance"},
    {"ar", "فاتح", "داكن", "اتباع مظهر النظام"},
    {"bg", "Светъл", "Тъмен", "Според облика на системата"},
    {"ca", "Clar", "Fosc", "Segueix l’aparença del sistema"},
    {"cs", "Světlý", "Tmavý", "Podle vzhledu systému"},
    {"da", "Lys", "Mørk", "Følg systemets udseende"},
    {"de", "Hell", "Dunkel", "Systemdarstellung folgen"},
    {"el", "Φωτεινή", "Σκούρα", "Όπως η εμφάνιση του συστήματος"},
    {"es", "Claro", "Oscuro", "Seguir la apariencia del sistema"},
    {"et", "Hele", "Tume", "Järgi süsteemi välimust"},
    {"fi", "Vaalea", "Tumma", "Seuraa järjestelmän ulkoasua"},
    {"fr", "Clair", "Sombre", "Suivre l’apparence du système"},
    {"gl", "Claro", "Escuro", "Seguir a aparencia do sistema"},
    {"he", "בהיר", "כהה", "לפי מראה המערכת"},
    {"hr", "Svijetlo", "Tamno", "Prati izgled sustava"},
    {"hu", "Világos", "Sötét", "A rendszer megjelenésének követése"},
    {"id", "Terang", "Gelap", "Ikuti tampilan sistem"},
    {"is", "Ljóst", "Dökkt", "Fylgja útliti kerfisins"},
    {"it", "Chiaro", "Scuro", "Segui l’aspetto del sistema"},
    {"iw", "בהיר", "כהה", "לפי מראה המערכת"},
    {"ja", "ライト", "ダーク", "システムの外観に合わせる"},
    {"ko", "라이트", "다크", "시스템 화면 모드 따르기"},
    {"lt", "Šviesi", "Tamsi", "Pagal sistemos išvaizdą"},
    {"lv", "Gaišs", "Tumšs", "Sekot sistēmas izskatam"},
    {"nb", "Lys", "Mørk", "Følg systemets utseende"},
    {"nl", "Licht", "Donker", "Systeemweergave volgen"},
    {"nn", "Lys", "Mørk", "Følg utsjånaden til systemet"},
    {"no", "Lys", "Mørk", "Følg systemets utseende"},
    {"pl", "Jasny", "Ciemny", "Zgodny z wyglądem systemu"},
    {"pt", "Claro", "Escuro", "Seguir o aspeto do sistema"},
    {"pt_BR", "Claro", "Escuro", "Seguir a aparência do sistema"},
    {"ro", "Luminos", "Întunecat", "Urmează aspectul sistemului"},
    {"ru", "Светлый", "Тёмный", "Следовать оформлению системы"},
    {"sk", "Svetlý", "Tmavý", "Podľa vzhľadu systému"},
    {"sl", "Svetlo", "Temno", "Sledi videzu sistema"},
    {"sr", "Светло", "Тамно", "Прати изглед система"},
    {"sr@latin", "Svetlo", "Tamno", "Prati izgled sistema"},
    {"sv", "Ljust", "Mörkt", "Följ systemets utseende"},
    {"tr", "Açık", "Koyu", "Sistem görünümünü takip et"},
    {"uk", "Світлий", "Темний", "Дотримуватися вигляду системи"},
    {"vi", "Sáng", "Tối", "Theo giao diện hệ thống"},
    {"zh", "浅色", "深色", "跟随系统外观"},
    {"zh_HK", "淺色", "深色", "跟隨系統外觀"},
    {"zh_MO", "淺色", "深色", "跟隨系統外觀"},
    {"zh_TW", "淺色", "深色", "跟隨系統外觀"},
};

} // namespace

std::string_view LocalizedStrings::textFor(std::string_view key) const noexcept {
    if (key == "Light") {
        return light;
    }
    if (key == "Dark") {
        return dark;
    }
    return key == "Follow system appearance" ? followSystemAppearance : key;
}

const LocalizedStrings* localizedStringsFor(std::string_view locale) noexcept {
    for (const LocalizedStrings& strings : allStrings) {
        if (strings.locale == locale) {
            return &strings;
        }
    }
    return nullptr;
}

} // namespace zel::inline v1
