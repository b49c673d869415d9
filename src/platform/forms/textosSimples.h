#pragma once

// Nothing that is shown is ever read as markup: a name such as "<img src=/dev/zero>" is shown, not followed. One filter
// before all windows takes labels (those of message boxes and of tooltips, too) as plain text and shortens tooltips.
namespace textosSimples {

void instalar(); // once is enough; more does no harm

} // namespace textosSimples
