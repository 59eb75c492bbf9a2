#pragma once

class Settings;

/// Cleans a store that releases before 1.3 left behind, and stamps the running version into section "Version".
void UpgradeSettings(Settings &settings);
