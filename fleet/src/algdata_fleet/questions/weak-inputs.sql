-- How many decisions rest on clamped or missing inputs
--
-- Of the decisions that move a device, not a client: those for which the scores of the device
-- have bounded or unset inputs (`score-inputs`), and those for which a reader changes a value
-- of its delay or score files (`clamped`, `loads-as-one`).
--
-- day         moves  onMissing  onClamped  onSound
-- 2026-11-20    200          0         20      180
-- 2026-11-21    200          0         20      180
-- 2026-11-22    163          0         14      149
WITH weak AS (
    SELECT day, home, device, 1 AS missing, 0 AS clamped FROM audit WHERE rule = 'score-inputs'
    UNION ALL
    SELECT day, home, device, 0 AS missing, 1 AS clamped FROM finding
    WHERE rule IN ('clamped', 'loads-as-one')
), devices AS (
    SELECT day, home, device, max(missing) AS missing, max(clamped) AS clamped
    FROM weak
    WHERE device IS NOT NULL
    GROUP BY day, home, device
)
SELECT
    decision.day,
    count(*) AS moves,
    sum(coalesce(devices.missing, 0)) AS onMissing,
    sum(coalesce(devices.clamped, 0)) AS onClamped,
    sum(CASE WHEN devices.device IS NULL THEN 1 ELSE 0 END) AS onSound
FROM alg_output AS decision
INNER JOIN tree
    ON tree.day = decision.day AND tree.home = decision.home AND tree.deviceMAC = decision.srcMAC
LEFT JOIN devices
    ON devices.day = decision.day AND devices.home = decision.home AND devices.device = decision.srcMAC
GROUP BY decision.day
ORDER BY decision.day
