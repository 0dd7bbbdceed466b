-- How many decisions rest on clamped or missing inputs
--
-- Of the decisions that move a device, not a client: those for which the scores of the device
-- have bounded or unset inputs (`score-inputs`), and those for which a reader changes a value
-- of its delay or score files (`clamped`, `loads-as-one`). The paths of these files have to
-- state `device`; a decision about a device without a score file counts as unknown.
--
-- day         moves  onMissing  onClamped  onSound  onUnknown
-- 2026-11-20    200          0         20      180          0
-- 2026-11-21    200          0         20      180          0
-- 2026-11-22    163          0         14      149          0
WITH inputs AS (
    SELECT day, home, snapshot, device, 0 AS missing, 0 AS clamped FROM score
    UNION ALL
    SELECT day, home, snapshot, device, 1 AS missing, 0 AS clamped FROM audit WHERE rule = 'score-inputs'
    UNION ALL
    SELECT day, home, snapshot, device, 0 AS missing, 1 AS clamped FROM finding
    WHERE rule IN ('clamped', 'loads-as-one')
), devices AS (
    SELECT day, home, snapshot, device, max(missing) AS missing, max(clamped) AS clamped
    FROM inputs
    WHERE device IS NOT NULL
    GROUP BY day, home, snapshot, device
)
SELECT
    decision.day,
    count(*) AS moves,
    sum(coalesce(devices.missing, 0)) AS onMissing,
    sum(coalesce(devices.clamped, 0)) AS onClamped,
    sum(CASE WHEN devices.missing = 0 AND devices.clamped = 0 THEN 1 ELSE 0 END) AS onSound,
    sum(CASE WHEN devices.device IS NULL THEN 1 ELSE 0 END) AS onUnknown
FROM alg_output AS decision
INNER JOIN tree
    ON tree.day = decision.day AND tree.home = decision.home AND tree.deviceMAC = decision.srcMAC
    AND tree.snapshot IS NOT DISTINCT FROM decision.snapshot
LEFT JOIN devices
    ON devices.day = decision.day AND devices.home = decision.home AND devices.device = decision.srcMAC
    AND devices.snapshot IS NOT DISTINCT FROM decision.snapshot
GROUP BY decision.day
ORDER BY decision.day
