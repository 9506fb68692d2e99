-- What wixl cannot say: run over the package by scripts/build-msi.sh, one statement a line. VERSION is the package's, FILEVERSION the
-- files' own.

-- Rollback actions: 1 a function of a DLL in the package, 64 its result ignored, 256 and 1024 on rollback, 2048 as the system.
UPDATE CustomAction SET Type = 3393 WHERE Action = 'RegisterRollback'
UPDATE CustomAction SET Type = 3393 WHERE Action = 'UnregisterRollback'
UPDATE CustomAction SET Type = 3393 WHERE Action = 'RestoreRollback'

-- Files with a version are compared by it, not by a hash.
UPDATE File SET Version = 'FILEVERSION', Language = '1033' WHERE File = 'Module'
UPDATE File SET Version = 'FILEVERSION', Language = '1033' WHERE File = 'Commands'
UPDATE File SET Version = 'FILEVERSION', Language = '1033' WHERE File = 'Setup'
UPDATE File SET Version = 'FILEVERSION', Language = '1033' WHERE File = 'SetupWithoutWindow'
DELETE FROM MsiFileHash WHERE File_ = 'Module'
DELETE FROM MsiFileHash WHERE File_ = 'Commands'
DELETE FROM MsiFileHash WHERE File_ = 'Setup'
DELETE FROM MsiFileHash WHERE File_ = 'SetupWithoutWindow'

-- What looks at the machine does so where it is elevated, and only there.
DELETE FROM InstallUISequence WHERE Action = 'AppSearch'
DELETE FROM InstallUISequence WHERE Action = 'FindRelatedProducts'
DELETE FROM InstallUISequence WHERE Action = 'LaunchConditions'

-- Older versions include this one: 256 and 512 take both ends in.
DELETE FROM Upgrade WHERE ActionProperty = 'OLDERFOUND'
INSERT INTO Upgrade (UpgradeCode, VersionMin, VersionMax, Attributes, ActionProperty) VALUES ('{6F0B6E0C-4E53-4C57-9C1B-2D7A1E95B8A4}', '0.0.0', 'VERSION', 768, 'OLDERFOUND')

-- Components that are installed only when the property was given.
UPDATE Component SET Condition = 'NMARK_ENABLED' WHERE Component = 'DefaultEnabled'
UPDATE Component SET Condition = 'NMARK_ICONS' WHERE Component = 'DefaultIcons'
UPDATE Component SET Condition = 'NMARK_LANGUAGE' WHERE Component = 'DefaultLanguage'
UPDATE Component SET Condition = 'NMARK_ENABLED OR NMARK_ICONS OR NMARK_LANGUAGE' WHERE Component = 'FirstLogon'

-- Properties that an administrator who elevates the installation may pass on. What is looked up in the registry is not among them.
UPDATE Property SET Value = 'OLDERFOUND;NEWERFOUND;INSTALLDIR;NMARK_ENABLED;NMARK_ICONS;NMARK_LANGUAGE' WHERE Property = 'SecureCustomProperties'
